#pragma once

#include "guitree/SceneInfoLog.h"
#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"

namespace sceneinfotest {

/// A panel that keeps the log of one scene, to be told of children that come.
class LogPanel {
public:
  LogPanel()
  {
    m_panel.Initialise();
    m_panel.host.answers.sceneManagerObserver->OnSceneAdded(m_scene);
  }
  ~LogPanel()
  {
    m_panel.host.answers.sceneManagerObserver->OnSceneRemoved(m_scene);
    m_panel.gui->Reset();
    m_panel.gui->Close();
  }
  LogPanel(const LogPanel&) = delete;
  LogPanel& operator=(const LogPanel&) = delete;

  [[nodiscard]] guitree::GuiTree& GetGuiTree() const { return *m_panel.gui; }
  [[nodiscard]] guitree::SceneInfoLog& GetLog() const { return *m_panel.gui->GetLog(m_scene); }

private:
  testsupport::Panel m_panel{""};
  const du::SmartPtr<testsupport::PlainShapeScene> m_scene = du::MakeSmart<testsupport::PlainShapeScene>();
};

}  // namespace sceneinfotest
