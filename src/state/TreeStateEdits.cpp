// How a tree state follows single edits of the kernel's tree.

#include "facade/Pin.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeStateBase.h"

namespace guitree {

bool TreeStateBase::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                                   const du::SmartPtr<zelk::BaseInstance>& parent,
                                   const du::SmartPtr<TreeSelectionController>& selController)
{
  if (!_HasGuiTree()) {
    return false;
  }
  const Pins pins(this, &guiTree);
  structure_utils::TreeFilterInfoBase& filter = _GetCurrentFilter();
  if (!filter.IsFiltering(false)) {
    _InstanceCreate(instance, parent, selController);
    return false;
  }
  return filter.GetDynamicUpdate() || notFilteredSet.contains(parent.Get());
}

bool TreeStateBase::InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                                   const du::SmartPtr<zelk::BaseInstance>& parent, bool repopulatePending)
{
  if (!_HasGuiTree()) {
    return false;
  }
  _NoteGone(instance);
  if (!notFilteredSet.contains(instance.Get())) {
    return false;
  }
  const Pins pins(this, &guiTree);
  structure_utils::TreeFilterInfoBase& filter = _GetCurrentFilter();
  if (filter.IsFiltering(false)) {
    if (filter.GetDynamicUpdate()) {
      return true;
    }
    // The state that answers for the filter may have let go of the row meanwhile.
    if (!notFilteredSet.contains(instance.Get())) {
      return false;
    }
  }
  _ForgetShown(instance);
  // Descendants stay recorded as highlighted until the next refill: nobody asks for them in the meantime.
  assocHlightSet.erase(instance.Get());
  _Gui().InstanceRemove(instance, parent, repopulatePending);
  return true;
}

void TreeStateBase::_NoteGone(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  // A kernel that tells of those below as well tells of what is known by then.
  if (!m_goneMeanwhile || !m_goneMeanwhile->emplace(instance.Get(), instance).second || !instance->HasChildren()) {
    return;
  }
  std::set<du::SmartPtr<zelk::BaseInstance>> all;
  zelk::BaseInstance::GetInstancesAndDescendents({instance}, all);
  for (const auto& gone : all) {
    m_goneMeanwhile->emplace(gone.Get(), gone);
  }
}

void TreeStateBase::_ForgetShown(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  if (!instance->HasChildren()) {
    notFilteredSet.erase(instance.Get());
    return;
  }
  std::set<du::SmartPtr<zelk::BaseInstance>> all;
  zelk::BaseInstance::GetInstancesAndDescendents({instance}, all);
  for (const auto& gone : all) {
    notFilteredSet.erase(gone.Get());
  }
}

}  // namespace guitree
