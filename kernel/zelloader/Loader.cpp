#include "zelloader/Loader.h"

#include "du/InstalledObject.h"

namespace zelloader {
namespace {

du::InstalledObject<Loader>& GetInstalled()
{
  static auto& s_installed = *new du::InstalledObject<Loader>;
  return s_installed;
}

}  // namespace

du::SmartPtr<Loader> Loader::GetLoader()
{
  return GetInstalled().Get();
}

void Loader::Install(const du::SmartPtr<Loader>& loader)
{
  GetInstalled().Set(loader);
}

}  // namespace zelloader
