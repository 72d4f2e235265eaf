#include "guitree/TypeIconMap.h"

#include "guitree/GuiTree.h"
#include "guitree/TreeStateBase.h"

namespace guitree {

TypeIconMap::TypeIconMap(GuiTree* tree) : guiTree(tree) {}

void TypeIconMap::Set(const zelk::BaseInstance* instance, int icon)
{
  if (instance) {
    insert_or_assign(instance, icon);
  }
}

bool TypeIconMap::Find(const zelk::BaseInstance* instance, int& icon, const du::SmartPtr<zelk::Scene>& scene)
{
  if (_Get(instance, icon)) {
    return true;
  }
  TreeStateBase* state = guiTree ? guiTree->GetTreeState() : nullptr;
  if (!instance || !state) {
    return false;
  }
  icon = state->GetUnloadedTypeIcon(instance, scene);
  if (state->IsInstLoaded(instance)) {
    ++icon;
  }
  Set(instance, icon);
  return true;
}

bool TypeIconMap::_Get(const zelk::BaseInstance* instance, int& icon) const
{
  const auto known = find(instance);
  if (known == end()) {
    return false;
  }
  icon = known->second;
  return true;
}

void TypeIconMap::ResetIcon(const zelk::BaseInstance* instance)
{
  erase(instance);
}

void TypeIconMap::Clear()
{
  clear();
}

}  // namespace guitree
