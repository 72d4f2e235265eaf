#include <gtest/gtest.h>

#include "FakeInstance.h"
#include "zelk/SelectionObserver.h"
#include "zelk/ShapeSceneObserver.h"
#include "zelk/ShapeViewObserver.h"
#include "zelk/TreeObserver.h"

namespace {

/// A kernel calls whatever it supports on observers that override nothing, with whatever it has: the defaults must take
/// it, and must not keep anything.
class ObserverDefaults : public testing::Test {
protected:
  void ExpectThatNothingWasKept() const
  {
    EXPECT_EQ(instance->AddReference(nullptr), 2);
    instance->RemoveReference(nullptr);
  }

  du::SmartPtr<kerneltest::FakeInstance> instance = du::MakeSmart<kerneltest::FakeInstance>();
};

TEST_F(ObserverDefaults, OfATree_KeepNothing)
{
  zelk::TreeObserver observer;

  observer.OnBeginUpdate();
  observer.OnInstanceCreate(instance, nullptr, "name");
  observer.OnInstanceRemove(instance, instance);
  observer.OnInstanceName(instance);
  observer.OnDisplayNamesChanged();
  observer.OnTreeColumnsChanged();
  observer.OnAddPropertyGroup("group");
  observer.OnRemovePropertyGroup("group");
  observer.OnAddProperty("group", "name");
  observer.OnRemoveProperty("group", "name");
  observer.OnInstancePropertiesChanged(instance);
  observer.OnInstanceExpanded(instance);
  observer.OnInstanceCollapsed(instance);
  observer.OnInstanceProxyToNode(instance);
  observer.OnInstanceAddViewable(instance, nullptr);
  observer.OnInstanceRemoveViewable(instance, nullptr);
  observer.OnPropertyGroupsLoaded();
  observer.OnModelExtentsChanged();
  observer.OnUDAPChanged(instance);
  observer.OnInstanceLocation(instance);
  observer.OnInstanceAppearanceOverride(instance);
  observer.OnInstanceSbomChanged(instance);
  observer.OnStructureAdded(instance);
  observer.OnEndUpdate();
  observer.OnDestroy();
  observer.OnUnregister();

  ExpectThatNothingWasKept();
}

TEST_F(ObserverDefaults, OfASceneAndAView_KeepNothing)
{
  zelk::ShapeSceneObserver sceneObserver;
  zelk::ShapeViewObserver viewObserver;

  sceneObserver.OnShapeInstanceCreate(nullptr);
  sceneObserver.OnShapeInstanceRemove(nullptr);
  sceneObserver.OnShapeInstanceVisibility(nullptr, true);
  sceneObserver.OnInstanceCompared(nullptr);
  sceneObserver.OnUnsyncInstances(true);
  sceneObserver.OnApplyTreeUpdate();
  sceneObserver.OnLightsChanged();
  sceneObserver.OnSectionCutsChanged();
  sceneObserver.OnAppearanceChanged();
  sceneObserver.OnMarkupCreate(instance);
  sceneObserver.OnMarkupRemove(instance);
  sceneObserver.OnMarkupVisibility(instance, false);
  viewObserver.OnCameraChanged();
  viewObserver.OnTargetFrameRate();
  viewObserver.OnHighlightColorsChange();
  viewObserver.OnShowStatistics();
  viewObserver.OnRenderStyleChanged();

  ExpectThatNothingWasKept();
}

TEST_F(ObserverDefaults, OfASelection_NeitherKeepNorChangeTheItems)
{
  zelk::SelectionObserver observer;
  std::vector<du::SmartPtr<zelk::Object>> objects{instance};

  observer.OnBeginUpdate();
  observer.OnSelectionChanged(0, true, {}, {});
  observer.OnRemoveItems(objects);
  observer.OnInsertItems(objects);
  observer.OnClearSelection();
  observer.OnEndUpdate();

  EXPECT_EQ(objects.size(), 1U);
  objects.clear();
  ExpectThatNothingWasKept();
}

}  // namespace
