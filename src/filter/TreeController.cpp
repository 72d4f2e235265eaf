#include "guitree/TreeController.h"

#include <algorithm>
#include <utility>

#include "filter/TCAsyncEvent.h"

namespace guitree {

TreeController::TreeController(GuiTree* tree) : guiTree(tree) {}

TreeController::TreeController(const TreeController&) = default;

TreeController& TreeController::operator=(const TreeController&) = default;

TreeController::~TreeController()
{
  for (const auto& event : events) {
    event->controller = nullptr;
  }
  filteredTree.Reset();
  observers.clear();
  events.clear();
}

void TreeController::AddObserver(du::SmartPtr<FilterObserverBase> observer)
{
  observers.push_back(std::move(observer));
}

void TreeController::RemoveObserver(
    du::SmartPtr<FilterObserverBase> observer)  // NOLINT(performance-unnecessary-value-param):
                                                // it must survive its entry
{
  const auto entry = std::find(observers.begin(), observers.end(), observer);
  if (entry != observers.end()) {
    observers.erase(entry);
  }
}

bool TreeController::IsBusy()
{
  return !events.empty();
}

du::SmartPtr<FilteredTree> TreeController::GetFilteredTree()
{
  return filteredTree;
}

int TreeController::AddSmartPtrReference(const TCAsyncEvent* event, void* owner)
{
  return event->AddReference(owner);
}

bool TreeController::AttemptDeleteSmartPtrReference(const TCAsyncEvent* event, void* owner)
{
  return du::ReleaseReference(event, owner);
}

}  // namespace guitree
