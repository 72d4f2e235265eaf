#include "testsupport/WorldPanel.h"

#include <algorithm>

namespace testsupport {

WorldPanel::WorldPanel(std::string_view treeText, const du::SmartPtr<dom::ManagedObject>& manager)
    : kernel(treeText),
      gui(du::MakeSmart<guitree::GuiTree>(manager)),
      state(du::MakeSmart<ScriptedWorldTreeState>(*gui))
{
  world->tree = kernel.Get();
  zelk::World::Install(world);
  state->onObserver = [this](const auto& made) { observer = made; };
  gui->SetGuiInterface(&host);
  gui->SetTreeState(state);
}

WorldPanel::~WorldPanel()
{
  zelk::World::Install(nullptr);
}

void WorldPanel::Initialise()
{
  gui->Initialise(world);
  static_cast<void>(host.TakeCalls());
}

std::vector<std::string> WorldPanel::GetShownNames() const
{
  std::vector<std::string> names;
  for (const zelk::BaseInstance* instance : state->GetNotFilteredSet()) {
    names.push_back(instance->GetObjectName());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace testsupport
