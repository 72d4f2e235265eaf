#include "guitree/TreeController.h"

#include <algorithm>
#include <list>
#include <utility>

#include "facade/Pin.h"
#include "facade/RunningPool.h"
#include "filter/TCAsyncEvent.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeStateBase.h"
#include "zelk/World.h"

namespace guitree {
namespace {

using InstancePointers = std::list<zelk::BaseInstance*>;

/// Of no list: an empty one.
InstancePointers Copy(const InstancePointers* list)
{
  return list ? *list : InstancePointers();
}

}  // namespace

TreeController::TreeController(GuiTree* tree) : guiTree(tree), m_liveness(std::make_shared<const int>()) {}

TreeController::TreeController(const TreeController& other)
    : guiTree(other.guiTree),
      events(other.events),
      observers(other.observers),
      filteredTree(other.filteredTree),
      m_filteredBaseTree(other.m_filteredBaseTree),
      m_untold(other.m_untold),
      m_requests(other.m_requests),
      m_liveness(std::make_shared<const int>())
{
}

TreeController& TreeController::operator=(const TreeController& other)
{
  if (this == &other) {
    return *this;
  }
  for (const auto& event : events) {
    if (!other._IsUnderWay(event)) {
      _Orphan(*event);
    }
  }
  guiTree = other.guiTree;
  m_requests = other.m_requests;
  // What is let go of may call out as it ends, and end this object: it goes last of all.
  const auto formerBaseTree = std::exchange(m_filteredBaseTree, other.m_filteredBaseTree);
  const auto formerTree = std::exchange(filteredTree, other.filteredTree);
  const auto formerJob = std::exchange(m_untold, other.m_untold);
  const auto formerObservers = std::exchange(observers, other.observers);
  const auto formerEvents = std::exchange(events, other.events);
  return *this;
}

TreeController::~TreeController()
{
  for (const auto& event : events) {
    _Orphan(*event);
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

void TreeController::ApplyFilterToTree(structure_utils::TreeFilterInfoBase& filter, TreeStateBase* state)
{
  const GuiTree& panel = *guiTree;
  const Pins pins(&panel, state);
  const std::weak_ptr<const int> liveness = m_liveness;
  _CancelAll();
  const du::SmartPtr<zelk::BaseTree> tree = panel.GetBaseTree();
  const du::SmartPtr<dom::ManagedObject> manager = panel.GetManagedObject();
  if (!tree || !manager || !manager->GetMessageQueue()) {
    return;
  }
  const auto event = du::MakeSmart<TCAsyncEvent>(this);
  manager->ManageObject(event);
  events.push_back(event);
  const unsigned int request = ++m_requests;
  _ShowProgress(panel, event);
  if (liveness.expired()) {
    return;
  }
  const auto task = _MakeTask(panel, filter, *state, tree, event);
  // The end of an event takes another turn of the loop to arrive, in which the worker would write what has been shown.
  if (liveness.expired() || event->IsCompleted() || !_IsUnderWay(event)) {
    return;
  }
  if (request != m_requests) {
    // Its empty result would come after that of the newer job, and take its place.
    event->Complete();
    return;
  }
  event->task = task;
  du::TaskPool* const pool = FindRunningPool();
  if (!pool) {
    // Nobody will ever run it: it ends as a job without a result.
    event->Complete();
    return;
  }
  // A pool refuses when its world ends, and the panel with it; whether it does makes no difference here.
  static_cast<void>(pool->InsertTask(task));
}

void TreeController::_Orphan(TCAsyncEvent& event) const
{
  // A copy holds the jobs of its source, which are not its own.
  if (event.controller == this) {
    event.controller = nullptr;
  }
}

void TreeController::_CancelAll()
{
  for (const auto& event : events) {
    if (event) {
      event->Cancel();
    }
  }
}

void TreeController::_ShowProgress(const GuiTree& panel, const du::SmartPtr<TCAsyncEvent>& event)
{
  const auto control = panel.GetGuiInterface()->CreateFilterProgressCtrl(event);
  const du::SmartPtr<zelk::World> world = zelk::World::GetWorld();
  const du::SmartPtr<zelk::ProgressController> progress = world ? world->GetProgressController() : nullptr;
  if (control && progress) {
    progress->AddCtrl(control);
  }
}

du::SmartPtr<GenerateFilteredTreeTask> TreeController::_MakeTask(const GuiTree& panel,
                                                                 structure_utils::TreeFilterInfoBase& filter,
                                                                 TreeStateBase& state,
                                                                 const du::SmartPtr<zelk::BaseTree>& tree,
                                                                 const du::SmartPtr<TCAsyncEvent>& event)
{
  const du::SmartPtr<du::RefCounted> additional = state.GetAdditionalFilterInfo();
  const bool isRootDisplayed = state.GetDisplayRoot();
  const du::SmartPtr<TreeSelectionController> selection = state.GetSelController(false);
  // Whoever is asked may put another host in place, which takes the former one's lists along: each is read at once.
  const InstancePointers list2 = Copy(panel.GetGuiInterface()->GetNonFilteredInsts2());
  const InstancePointers list1 = Copy(panel.GetGuiInterface()->GetNonFilteredInsts1());
  return du::MakeSmart<GenerateFilteredTreeTask>(&state, filter, selection, additional, tree, &list1, &list2,
                                                 !isRootDisplayed, event.Get());
}

bool TreeController::_IsUnderWay(const du::SmartPtr<TCAsyncEvent>& event) const
{
  return std::find(events.begin(), events.end(), event) != events.end();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the event must survive its entry
void TreeController::_EventComplete(du::SmartPtr<TCAsyncEvent> event, bool /*isPlain*/)
{
  // What is let go of may call out as it ends, and end this object: it goes last of all.
  du::SmartPtr<zelk::BaseTree> formerBaseTree;
  du::SmartPtr<FilteredTree> formerTree;
  du::SmartPtr<GenerateFilteredTreeTask> formerJob;
  const du::SmartPtr<GenerateFilteredTreeTask> task = event->task;
  if (task) {
    formerBaseTree = std::exchange(m_filteredBaseTree, task->GetBaseTree());
    formerTree = std::exchange(filteredTree, task->GetFilteredTreeResult());
    formerJob = std::exchange(m_untold, task);
  }
  const auto entry = std::find(events.begin(), events.end(), event);
  if (entry != events.end()) {
    events.erase(entry);
  }
  // The last one to leave may be an event that never had a job.
  if (events.empty() && m_untold) {
    _TellObservers();
  }
}

void TreeController::_TellObservers()
{
  const std::weak_ptr<const int> liveness = m_liveness;
  const du::SmartPtr<GenerateFilteredTreeTask> task = std::exchange(m_untold, nullptr);
  const du::SmartPtr<zelk::BaseTree> tree = task->GetBaseTree();
  for (std::size_t next = 0; !liveness.expired() && next < observers.size(); ++next) {
    const du::SmartPtr<FilterObserverBase> observer = observers[next];
    observer->OnProcessingComplete(tree, task->GetGuiInterface());
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
