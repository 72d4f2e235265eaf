#pragma once

#include <functional>
#include <string>
#include <vector>

#include "dg/Color.h"
#include "du/Symbol.h"
#include "zelk/ClashReportView.h"
#include "zelk/Observer.h"
#include "zelk/ShapeScene.h"
#include "zelk/ShapeSceneObserver.h"
#include "zelk/ShapeView.h"
#include "zelk/ShapeViewObserver.h"

namespace testsupport {

/// What a subject does that ends while an observer is registered. Null for none.
inline void DropObserver(zelk::Observer* observer)
{
  if (observer) {
    observer->OnUnregister();
    observer->RemoveRegistration();
  }
}

/// A scene that is no shape scene.
class PlainScene : public zelk::Scene {
public:
  du::SmartPtr<zelk::SelectionManager> selectionManager;

  void GetSelectionManager(du::SmartPtr<zelk::SelectionManager>& out) const override { out = selectionManager; }
};

/// A shape scene without shape instances: it writes down who registers, and a test plays its events.
class PlainShapeScene : public zelk::ShapeScene {
public:
  PlainShapeScene() = default;
  PlainShapeScene(const PlainShapeScene&) = delete;
  PlainShapeScene& operator=(const PlainShapeScene&) = delete;
  ~PlainShapeScene() override { DropObserver(observer); }

  du::SmartPtr<zelk::SelectionManager> selectionManager;
  std::vector<std::string> calls;
  /// Null while nobody is registered.
  zelk::ShapeSceneObserver* observer = nullptr;
  /// What a registration with replay brings before it returns.
  std::function<void(zelk::ShapeSceneObserver&)> replay;

  void GetSelectionManager(du::SmartPtr<zelk::SelectionManager>& out) const override { out = selectionManager; }
  bool RegisterObserver(zelk::ShapeSceneObserver& newObserver, du::Flags what, bool withReplay) override
  {
    calls.push_back("RegisterObserver(" + std::to_string(what.GetBits()) + (withReplay ? ", replay)" : ")"));
    observer = &newObserver;
    newObserver.AddRegistration();
    if (withReplay && replay) {
      replay(newObserver);
    }
    return true;
  }
  bool UnregisterObserver(zelk::ShapeSceneObserver& oldObserver) override
  {
    calls.emplace_back("UnregisterObserver");
    observer = nullptr;
    oldObserver.RemoveRegistration();
    return true;
  }
  bool GetShapeInstance(const du::ConstSmartPtr<zelk::Instance>& /*instance*/,
                        du::SmartPtr<zelk::ShapeInstance>& out) const override
  {
    out.Reset();
    return false;
  }
};

/// What the views of the tests have in common.
struct ViewSettings {
  du::Symbol name;
  du::SmartPtr<zelk::Scene> scene;
  dg::Color assocHighlight{1.0F, 0.5F, 0.25F, 1.0F};

  void Read(dg::Color& selection, dg::Color& highlight, dg::Color& third) const
  {
    selection = dg::Color(0.1F, 0.1F, 0.1F, 1.0F);
    highlight = dg::Color(0.2F, 0.2F, 0.2F, 1.0F);
    third = assocHighlight;
  }
};

/// A view that is no shape view, with or without a scene.
template <typename Base>
class PlainViewOf : public Base {
public:
  ViewSettings settings;

  [[nodiscard]] du::Symbol GetObjectName() const override { return settings.name; }
  void GetScene(du::SmartPtr<zelk::Scene>& out) const override { out = settings.scene; }
  void GetHighlightSettings(bool& showSelection, bool& showHighlight, bool& showAssocHighlight, dg::Color& selection,
                            dg::Color& highlight, dg::Color& assocHighlight) override
  {
    showSelection = showHighlight = showAssocHighlight = true;
    settings.Read(selection, highlight, assocHighlight);
  }
};

using PlainView = PlainViewOf<zelk::View>;
using PlainClashReportView = PlainViewOf<zelk::ClashReportView>;

/// A shape view that writes down who registers.
class PlainShapeView : public PlainViewOf<zelk::ShapeView> {
public:
  PlainShapeView() = default;
  PlainShapeView(const PlainShapeView&) = delete;
  PlainShapeView& operator=(const PlainShapeView&) = delete;
  ~PlainShapeView() override { DropObserver(observer); }

  std::vector<std::string> calls;
  /// Null while nobody is registered.
  zelk::ShapeViewObserver* observer = nullptr;
  /// What a registration with replay brings before it returns.
  std::function<void(zelk::ShapeViewObserver&)> replay;

  bool RegisterObserver(zelk::ShapeViewObserver& newObserver, bool withReplay) override
  {
    calls.emplace_back(withReplay ? "RegisterObserver(replay)" : "RegisterObserver()");
    observer = &newObserver;
    newObserver.AddRegistration();
    if (withReplay && replay) {
      replay(newObserver);
    }
    return true;
  }
  bool UnregisterObserver(zelk::ShapeViewObserver& oldObserver) override
  {
    calls.emplace_back("UnregisterObserver");
    if (observer == &oldObserver) {
      observer = nullptr;
    }
    oldObserver.RemoveRegistration();
    return true;
  }
};

template <typename ViewType>
[[nodiscard]] du::SmartPtr<ViewType> MakeView(const du::SmartPtr<zelk::Scene>& scene)
{
  auto view = du::MakeSmart<ViewType>();
  view->settings.scene = scene;
  return view;
}

}  // namespace testsupport
