#pragma once

#include <QDockWidget>
#include <set>

#include "AssemblyState.h"
#include "guitree/GuiTree.h"
#include "memkernel/ShapeScene.h"
#include "memkernel/View.h"
#include "memkernel/World.h"
#include "qthost/GuiTreePanel.h"
#include "qthost/LoopDriver.h"

// begin dock
class StructureDock : public QDockWidget {
public:
  StructureDock(const du::SmartPtr<memkernel::World>& world, const du::SmartPtr<zelk::Scene>& scene,
                const du::SmartPtr<zelk::View>& view)
      : QDockWidget("Structure"),
        m_driver([loop = world->GetLoopPtr()] { loop->RunDue(); }),
        m_gui(du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject()))
  {
    world->GetLoop().SetWakeUp(m_driver.MakeWakeUp());
    m_model.SetPanel(m_gui.Get());
    m_gui->SetGuiInterface(&m_model);
    m_gui->SetTreeState(du::MakeSmart<AssemblyState>(*m_gui));
    m_gui->Initialise(world);
    m_model.GetSceneManagerObserver()->OnSceneAdded(scene);
    m_model.GetSceneManagerObserver()->OnActiveViewChanged(view);
    setWidget(&m_panel);
  }
  ~StructureDock() override { m_gui->Close(); }

  [[nodiscard]] qthost::GuiTreePanel& GetPanel() noexcept { return m_panel; }

private:
  qthost::LoopDriver m_driver;
  qthost::GuiTreeItemModel m_model;
  qthost::GuiTreePanel m_panel{m_model};
  du::SmartPtr<guitree::GuiTree> m_gui;
};
// end dock

// begin show
inline bool ShowInScene(memkernel::ShapeScene& scene, const qthost::GuiTreePanel::Instances& instances, bool isVisible)
{
  std::set<du::SmartPtr<zelk::BaseInstance>> branches;
  zelk::BaseInstance::GetInstancesAndDescendents({instances.begin(), instances.end()}, branches);
  const memkernel::ShapeSceneBatch batch(scene);
  bool hasChanged = false;
  for (const auto& instance : branches) {
    const auto shown = scene.FindShapeInstance(zelk::AsInstance(instance.Get()));
    if (shown && shown->IsVisible() != isVisible) {
      hasChanged = scene.SetVisible(shown, isVisible) || hasChanged;
    }
  }
  return hasChanged;
}
// end show
