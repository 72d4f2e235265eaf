#include "zelk/ShapeSceneObserver.h"

namespace zelk {

void ShapeSceneObserver::OnShapeInstanceCreate(const du::SmartPtr<ShapeInstance>& /*instance*/) {}
void ShapeSceneObserver::OnShapeInstanceRemove(const du::SmartPtr<ShapeInstance>& /*instance*/) {}
void ShapeSceneObserver::OnShapeInstanceVisibility(const du::SmartPtr<ShapeInstance>& /*instance*/, bool /*visible*/) {}
void ShapeSceneObserver::OnInstanceCompared(const du::SmartPtr<ShapeInstance>& /*instance*/) {}
void ShapeSceneObserver::OnUnsyncInstances(bool /*unsynced*/) {}
void ShapeSceneObserver::OnApplyTreeUpdate() {}

}  // namespace zelk
