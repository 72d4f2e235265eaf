#pragma once

#include "PanelModel.h"

namespace systemtest {

/// Passes what a tree tells on to a model.
class TreeListener : public zelk::TreeObserver {
public:
  explicit TreeListener(PanelModel& model) : m_model(model) {}

  void OnInstanceCreate(const BasePtr& instance, const BasePtr& parent, const du::Symbol& /*name*/) override
  {
    m_model.OnInstanceCreate(instance, parent);
  }
  void OnInstanceRemove(const BasePtr& instance, const BasePtr& parent) override
  {
    m_model.OnInstanceRemove(instance, parent);
  }
  void OnInstanceName(const BasePtr& instance) override { m_model.OnInstanceName(instance); }
  void OnInstanceExpanded(const du::SmartPtr<zelk::Instance>& instance) override
  {
    m_model.OnInstanceExpanded(instance);
  }
  void OnInstanceCollapsed(const du::SmartPtr<zelk::Instance>& instance) override
  {
    m_model.OnInstanceCollapsed(instance);
  }
  void OnInstanceProxyToNode(const du::SmartPtr<zelk::Instance>& instance) override
  {
    m_model.OnInstanceProxyToNode(instance);
  }
  void OnDisplayNamesChanged() override { m_model.OnDisplayNamesChanged(); }
  void OnTreeColumnsChanged() override { m_model.OnTreeColumnsChanged(); }
  void OnEndUpdate() override { m_model.OnTreeEndUpdate(); }

private:
  PanelModel& m_model;
};

/// The same for a scene.
class SceneListener : public zelk::ShapeSceneObserver {
public:
  SceneListener(PanelModel& model, const du::SmartPtr<zelk::Scene>& scene) : m_model(model), m_scene(scene) {}

  void OnShapeInstanceCreate(const du::SmartPtr<zelk::ShapeInstance>& instance) override
  {
    m_model.OnShapeCreate(m_scene, instance);
  }
  void OnShapeInstanceRemove(const du::SmartPtr<zelk::ShapeInstance>& instance) override
  {
    m_model.OnShapeRemove(m_scene, instance);
  }
  void OnShapeInstanceVisibility(const du::SmartPtr<zelk::ShapeInstance>& instance, bool visible) override
  {
    m_model.OnShapeVisibility(m_scene, instance, visible);
  }
  void OnInstanceCompared(const du::SmartPtr<zelk::ShapeInstance>& instance) override
  {
    m_model.OnCompared(m_scene, instance);
  }
  void OnApplyTreeUpdate() override { m_model.OnApplyTreeUpdate(); }
  void OnEndUpdate() override { m_model.OnSceneEndUpdate(m_scene); }

private:
  PanelModel& m_model;
  const du::SmartPtr<zelk::Scene> m_scene;
};

/// The same for the selection.
class SelectionListener : public zelk::SelectionObserver {
public:
  explicit SelectionListener(PanelModel& model) : m_model(model) {}

  void OnInsertItems(std::vector<du::SmartPtr<zelk::Object>>& items) override { m_model.OnSelected(items, true); }
  void OnRemoveItems(std::vector<du::SmartPtr<zelk::Object>>& items) override { m_model.OnSelected(items, false); }
  void OnClearSelection() override { m_model.OnSelectionCleared(); }
  void OnEndUpdate() override { m_model.OnSelectionEndUpdate(); }

private:
  PanelModel& m_model;
};

class HighlightListener : public zelk::SelectionObserver {
public:
  explicit HighlightListener(PanelModel& model) : m_model(model) {}

  void OnSelectionChanged(unsigned int /*list*/, bool clearFirst, const PanelModel::Items& removed,
                          const PanelModel::Items& added) override
  {
    m_model.OnHighlightChanged(clearFirst, removed, added);
  }

private:
  PanelModel& m_model;
};

}  // namespace systemtest
