#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "testsupport/PlainScenes.h"

namespace testsupport {

/// A log that tells what is done to it, and does it.
class RecordingLog : public guitree::SceneInfoLog {
public:
  using Sink = std::function<void(const std::string& line)>;
  using SceneInfoLog::SetVisible;

  RecordingLog(guitree::GuiTree* tree, Sink sink) : SceneInfoLog(tree), m_sink(std::move(sink)) {}

  void RemoveFromLog(zelk::BaseInstance* instance) override
  {
    m_sink("RemoveFromLog(" + _NameOf(instance) + ")");
    SceneInfoLog::RemoveFromLog(instance);
  }
  void SetVisible(zelk::BaseInstance* instance, guitree::ECompVisible visible, bool propagate) override
  {
    m_sink("SetVisible(" + _NameOf(instance) + ", " + std::to_string(visible) + (propagate ? ", propagate)" : ")"));
    SceneInfoLog::SetVisible(instance, visible, propagate);
  }
  void ForceVisibleToHidden(zelk::BaseInstance* instance) override
  {
    m_sink("ForceVisibleToHidden(" + _NameOf(instance) + ")");
    SceneInfoLog::ForceVisibleToHidden(instance);
  }
  void MarkTypeIconChanged(const zelk::BaseInstance* instance) override
  {
    m_sink("MarkTypeIconChanged(" + _NameOf(instance) + ")");
    SceneInfoLog::MarkTypeIconChanged(instance);
  }
  void ClearVisibleChangeMap() override
  {
    m_sink("ClearVisibleChangeMap()");
    SceneInfoLog::ClearVisibleChangeMap();
  }
  void ClearTypeIconChangeMap() override
  {
    m_sink("ClearTypeIconChangeMap()");
    SceneInfoLog::ClearTypeIconChangeMap();
  }

private:
  [[nodiscard]] static std::string _NameOf(const zelk::BaseInstance* instance)
  {
    return instance ? std::string(instance->GetObjectName()) : "null";
  }

  Sink m_sink;
};

/// A shape scene that a panel shows, with a `RecordingLog`: what the log is told stands among the calls of the host.
/// Takes the place of `onCall` of the host. Goes before the panel does.
class ShownScene {
public:
  /// `panel` must be initialised.
  template <typename PanelT>
  explicit ShownScene(PanelT& panel) : m_reports(panel.host.answers.sceneManagerObserver), m_onCall(&panel.host.onCall)
  {
    panel.state->makeSceneInfoLog = [this, tree = panel.gui.Get()] {
      log = new RecordingLog(tree, [this](const std::string& line) { lines.push_back(line); });
      return log;
    };
    panel.host.onCall = [this](const std::string& line) { lines.push_back(line); };
    m_reports->OnSceneAdded(scene);
    m_reports->OnActiveViewChanged(view);
    lines.clear();
    static_cast<void>(panel.host.TakeCalls());
  }
  ShownScene(const ShownScene&) = delete;
  ShownScene& operator=(const ShownScene&) = delete;
  ~ShownScene()
  {
    m_reports->OnSceneRemoved(scene);
    *m_onCall = nullptr;
  }

  [[nodiscard]] std::vector<std::string> TakeLines() { return std::exchange(lines, {}); }

  std::vector<std::string> lines;
  /// The panel's.
  guitree::SceneInfoLog* log = nullptr;
  du::SmartPtr<PlainShapeScene> scene = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeView> view = MakeView<PlainShapeView>(scene);

private:
  const du::SmartPtr<guitree::GuiInterface::SceneManagerObserver> m_reports;
  std::function<void(const std::string&)>* m_onCall;
};

}  // namespace testsupport
