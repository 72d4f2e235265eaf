#include "zelk/World.h"

#include "du/InstalledObject.h"

namespace zelk {
namespace {

du::InstalledObject<World>& GetInstalled()
{
  static auto& s_installed = *new du::InstalledObject<World>;
  return s_installed;
}

}  // namespace

du::SmartPtr<World> World::GetWorld()
{
  return GetInstalled().Get();
}

void World::Install(const du::SmartPtr<World>& world)
{
  GetInstalled().Set(world);
}

}  // namespace zelk
