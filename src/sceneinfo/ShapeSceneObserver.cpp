#include "sceneinfo/ShapeSceneObserver.h"

#include "facade/LiveGuiTree.h"

namespace guitree {

du::Symbol ShapeSceneObserver::GetObjectClass() const
{
  static const du::Symbol s_class("guitree::ShapeSceneObserver");
  return s_class;
}

void ShapeSceneObserver::OnUnregister()
{
  guiTree = nullptr;
}

void ShapeSceneObserver::OnEndUpdate()
{
  const Pin self(this);
  const LiveGuiTree tree(guiTree);
  const du::SmartPtr<zelk::ShapeScene> ownScene = scene;
  if (tree) {
    tree->OnShapeSceneEndUpdate(ownScene, changed);
  }
  changed = false;
}

void ShapeSceneObserver::OnShapeInstanceCreate(const du::SmartPtr<zelk::ShapeInstance>& instance)
{
  const Pin self(this);
  const du::SmartPtr<zelk::ShapeScene> ownScene = scene;
  if (const LiveGuiTree tree(guiTree); tree && tree->OnShapeInstanceCreate(ownScene, instance)) {
    changed = true;
  }
}

void ShapeSceneObserver::OnShapeInstanceRemove(const du::SmartPtr<zelk::ShapeInstance>& instance)
{
  const Pin self(this);
  const du::SmartPtr<zelk::ShapeScene> ownScene = scene;
  if (const LiveGuiTree tree(guiTree); tree && tree->OnShapeInstanceRemove(ownScene, instance)) {
    changed = true;
  }
}

void ShapeSceneObserver::OnShapeInstanceVisibility(const du::SmartPtr<zelk::ShapeInstance>& instance, bool visible)
{
  const Pin self(this);
  const du::SmartPtr<zelk::ShapeScene> ownScene = scene;
  if (const LiveGuiTree tree(guiTree); tree) {
    tree->OnShapeInstanceVisibility(ownScene, instance, visible);
  }
}

void ShapeSceneObserver::OnInstanceCompared(const du::SmartPtr<zelk::ShapeInstance>& instance)
{
  const Pin self(this);
  const du::SmartPtr<zelk::ShapeScene> ownScene = scene;
  if (const LiveGuiTree tree(guiTree); tree) {
    tree->OnShapeInstanceCompared(ownScene, instance);
  }
}

void ShapeSceneObserver::OnUnsyncInstances(bool unsynced)
{
  const Pin self(this);
  if (const LiveGuiTree tree(guiTree); tree) {
    tree->OnUnsyncInstances(unsynced);
  }
}

void ShapeSceneObserver::OnApplyTreeUpdate()
{
  const Pin self(this);
  if (const LiveGuiTree tree(guiTree); tree) {
    tree->ApplyTreeUpdate();
  }
}

}  // namespace guitree
