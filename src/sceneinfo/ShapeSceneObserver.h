#pragma once

#include "du/SmartPtr.h"
#include "zelk/ShapeScene.h"
#include "zelk/ShapeSceneObserver.h"

namespace guitree {

class GuiTree;

/// Listens to one shape scene for a `GuiTree`, which clears the back pointer when it is done with the scene.
class ShapeSceneObserver : public zelk::ShapeSceneObserver {
public:
  explicit ShapeSceneObserver(GuiTree* tree) : guiTree(tree) {}

  [[nodiscard]] du::Symbol GetObjectClass() const override;
  void OnUnregister() override;
  void OnEndUpdate() override;
  void OnShapeInstanceCreate(const du::SmartPtr<zelk::ShapeInstance>& instance) override;
  void OnShapeInstanceRemove(const du::SmartPtr<zelk::ShapeInstance>& instance) override;
  void OnShapeInstanceVisibility(const du::SmartPtr<zelk::ShapeInstance>& instance, bool visible) override;
  void OnInstanceCompared(const du::SmartPtr<zelk::ShapeInstance>& instance) override;
  void OnUnsyncInstances(bool unsynced) override;
  void OnApplyTreeUpdate() override;

  GuiTree* guiTree;
  /// Whether the update under way ends in a repaint of all rows.
  bool changed = false;
  du::SmartPtr<zelk::ShapeScene> scene;
};

}  // namespace guitree
