#include "testsupport/Panel.h"

#include <algorithm>

namespace testsupport {

Panel::Panel(std::string_view treeText, const du::SmartPtr<dom::ManagedObject>& manager)
    : kernel(treeText), gui(du::MakeSmart<guitree::GuiTree>(manager))
{
  state->baseTree = kernel.Get();
  world->tree = kernel.Get();
  gui->SetGuiInterface(&host);
  gui->SetTreeState(state);
}

void Panel::Initialise()
{
  gui->Initialise(world);
  static_cast<void>(host.TakeCalls());
  state->calls.clear();
}

du::SmartPtr<ScriptedSelectionController> Panel::UseSelController()
{
  state->selController = du::MakeSmart<ScriptedSelectionController>();
  return state->selController;
}

std::vector<std::string> Panel::GetShownNames() const
{
  std::vector<std::string> names;
  for (const zelk::BaseInstance* instance : state->GetNotFilteredSet()) {
    names.push_back(instance->GetObjectName());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace testsupport
