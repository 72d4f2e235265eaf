#pragma once

#include "du/SmartPtr.h"
#include "zelk/SceneObserver.h"
#include "zelk/ShapeInstance.h"

namespace zelk {

/// Listens to the shape instances of a scene, in brackets as every observer.
class ShapeSceneObserver : public SceneObserver {
public:
  virtual void OnShapeInstanceCreate(const du::SmartPtr<ShapeInstance>& instance);
  /// The shape instance has been taken out of the scene, and still knows its tree instance.
  virtual void OnShapeInstanceRemove(const du::SmartPtr<ShapeInstance>& instance);
  virtual void OnShapeInstanceVisibility(const du::SmartPtr<ShapeInstance>& instance, bool visible);
  virtual void OnInstanceCompared(const du::SmartPtr<ShapeInstance>& instance);
  /// Instances have come out of step with their source, or are in step again.
  virtual void OnUnsyncInstances(bool unsynced);
  /// What the scene marks in the tree has changed.
  virtual void OnApplyTreeUpdate();
};

}  // namespace zelk
