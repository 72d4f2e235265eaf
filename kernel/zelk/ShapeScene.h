#pragma once

#include "du/Flags.h"
#include "du/SmartPtr.h"
#include "zelk/Scene.h"
#include "zelk/ShapeInstance.h"

namespace zelk {

class ShapeSceneObserver;

/// A scene of shape instances, at most one for each instance of the tree.
class ShapeScene : public Scene {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdShapeScene, "zelk::ShapeScene", &Scene::CLASS_TYPE};

  /// Owner's thread. `what` chooses among the kernel's groups of events; 0xb asks for those of the shape instances.
  /// With `replay` the observer is first told of all shape instances that exist, as if they were created. False, and
  /// nothing done, if it is registered already.
  virtual bool RegisterObserver(ShapeSceneObserver& observer, du::Flags what, bool replay) = 0;
  /// Owner's thread. False if the observer is not registered. Inside an open run of events the observer's `OnEndUpdate`
  /// is called first.
  virtual bool UnregisterObserver(ShapeSceneObserver& observer) = 0;
  /// Any thread. Overwrites `out` with the shape instance of a tree instance, null and false if there is none or
  /// `instance` is null. Whoever gets one may be its last holder, once the scene has let go of it.
  virtual bool GetShapeInstance(const du::ConstSmartPtr<Instance>& instance,
                                du::SmartPtr<ShapeInstance>& out) const = 0;

  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
