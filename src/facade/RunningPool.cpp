#include "facade/RunningPool.h"

#include "zelk/World.h"

namespace guitree {

du::TaskPool* FindRunningPool()
{
  const du::SmartPtr<zelk::World> world = zelk::World::GetWorld();
  return world ? world->GetTaskPool() : nullptr;
}

}  // namespace guitree
