#include "stepimport/Scene.h"

#include <vector>

#include "zelk/BaseInstance.h"

namespace stepimport {

namespace {

using BasePtr = du::SmartPtr<zelk::BaseInstance>;

/// What follows in a walk of the branch, parents first; null after the last one.
BasePtr GetNext(const BasePtr& from, const zelk::BaseInstance* top)
{
  BasePtr next;
  from->GetBaseFirstChild(next);
  for (BasePtr above = from; !next && above.Get() != top; above->GetBaseParent(above)) {
    above->GetBaseNextSibling(next);
  }
  return next;
}

std::vector<du::SmartPtr<memkernel::Instance>> FindShapeSources(const BasePtr& top)
{
  std::vector<du::SmartPtr<memkernel::Instance>> found;
  for (BasePtr instance = top; instance; instance = GetNext(instance, top.Get())) {
    const auto own = du::DynamicCast<memkernel::Instance>(instance);
    if (own && own->HasShapeSource()) {
      found.push_back(own);
    }
  }
  return found;
}

}  // namespace

OpenedScene OpenScene(const memkernel::World& world)
{
  OpenedScene opened;
  opened.scene = world.CreateShapeScene(world.selectionManager);
  AddToScene(*opened.scene, world.GetMemTree().GetRootInstance());
  opened.view = du::MakeSmart<memkernel::ShapeView>(opened.scene);
  return opened;
}

// The walk ends before the first announcement: observers may edit the tree.
std::size_t AddToScene(memkernel::ShapeScene& scene, const du::SmartPtr<memkernel::Instance>& top)
{
  std::size_t count = 0;
  const memkernel::ShapeSceneBatch batch(scene);
  for (const auto& instance : FindShapeSources(top)) {
    count += scene.CreateShapeInstance(instance) ? 1U : 0U;
  }
  return count;
}

}  // namespace stepimport
