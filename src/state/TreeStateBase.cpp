#include "guitree/TreeStateBase.h"

#include <utility>

#include "dp/ZelTracer.h"
#include "facade/Pin.h"
#include "facade/TreeUpdateScope.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeController.h"
#include "state/AddNodeVisitor.h"
#include "state/FormerRows.h"
#include "state/TreeStateFilterObserver.h"

namespace guitree {
namespace {

constexpr dp::ZelTracer s_tracer("guitree", "TreeStateBase");

}  // namespace

TreeStateBase::TreeStateBase(GuiTree& tree)
    : guiTree(tree),
      filterObserver(du::MakeSmart<FilterObserver>(this)),
      m_population(tree.GetPopulationCounter()),
      m_livingGuiTree(tree.GetLiveness())
{
  guiTree.GetTreeController()->AddObserver(filterObserver);
}

TreeStateBase::TreeStateBase(const TreeStateBase&) = default;

TreeStateBase::~TreeStateBase()
{
  if (_HasGuiTree() && guiTree.GetTreeController()) {
    guiTree.GetTreeController()->RemoveObserver(filterObserver);
  }
  filterObserver->owner = nullptr;
}

bool TreeStateBase::GetDisplayRoot()
{
  return true;
}

FilteredTree* TreeStateBase::CreateFilteredTree()
{
  return nullptr;
}

bool TreeStateBase::IsDoingFilterAsList()
{
  return false;
}

bool TreeStateBase::UpdateSceneInfoLog_OnSceneRemoved(const du::SmartPtr<zelk::Scene>& /*scene*/)
{
  return false;
}

bool TreeStateBase::UpdateSceneInfoLog_OnShapeInstanceCreate(SceneInfoLog* /*log*/,
                                                             const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/)
{
  return false;
}

bool TreeStateBase::UpdateSceneInfoLog_OnShapeInstanceRemove(SceneInfoLog* /*log*/,
                                                             const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/)
{
  return false;
}

void TreeStateBase::UpdateSceneInfoLog_OnShapeInstanceVisibility(
    SceneInfoLog* /*log*/, const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/, bool /*visible*/)
{
}

void TreeStateBase::UpdateSceneInfoLog_OnInstanceCompared(SceneInfoLog* /*log*/,
                                                          const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/)
{
}

bool TreeStateBase::DoAdditionalUpdateIcons(const zelk::BaseInstance* /*instance*/,
                                            const du::SmartPtr<zelk::Scene>& /*scene*/, int& /*icon*/)
{
  return false;
}

bool TreeStateBase::ShowLoadedNoLog(const zelk::BaseInstance* /*instance*/) const
{
  return true;
}

du::SmartPtr<du::RefCounted> TreeStateBase::GetAdditionalFilterInfo() const
{
  return {};
}

bool TreeStateBase::IsInstHidden(zelk::BaseInstance* /*instance*/) const
{
  return false;
}

bool TreeStateBase::HasNoneHiddenChildren(const du::SmartPtr<zelk::BaseInstance>& instance) const
{
  return instance->HasChildren();
}

void TreeStateBase::OverrideActiveViewAfterChange(du::SmartPtr<zelk::View>& /*view*/) {}

bool TreeStateBase::GetNeedsUpdate(const du::SmartPtr<zelk::Scene>& /*scene*/) const
{
  return false;
}

void TreeStateBase::CheckAltPartNamePrefs() {}

bool TreeStateBase::IsCompatibleShapeSceneType(const du::SmartPtr<zelk::Scene>& /*scene*/)
{
  return true;
}

bool TreeStateBase::IsTooltipsUpdateNeeded(const du::SmartPtr<zelk::Scene>& /*scene*/) const
{
  return false;
}

bool TreeStateBase::IsCompatibleViewType(const du::SmartPtr<zelk::View>& /*view*/) const
{
  return true;
}

bool TreeStateBase::ReloadOnViewChange(const du::SmartPtr<zelk::View>& /*view*/) const
{
  return false;
}

void TreeStateBase::PopulateTree(bool keepExpanded)
{
  if (!_HasGuiTree() || !guiTree.GetBaseTree()) {
    return;
  }
  const Pins pins(this, &guiTree);
  s_tracer(dp::TraceType::Info) << "Populating tree... ";
  _Gui().StoreExpandedAndFirstVisibleBeforePopulate(keepExpanded);
  if (!_Refill()) {
    return;
  }
  _Gui().RestoreFirstVisible();
  _Gui().UpdateMarkedInsts(guiTree.GetCurShapeScene());
  _Gui().ContentHasChanged();
  _Gui().UpdateQuickSearchResults(true, nullptr, false);
}

bool TreeStateBase::_Refill()
{
  const TreeUpdateScope update(_Gui());
  structure_utils::TreeFilterInfoBase& filter = _GetCurrentFilter();
  // The host needs no word about the highlights that this drops: their rows go next.
  assocHlightSet.clear();
  const auto formerRows = std::make_shared<FormerRows>(notFilteredSet);
  m_formerRows.reset();
  const unsigned int population = ++*m_population;
  m_ownPopulation = population;
  _Gui().ClearTree();
  if (!_CanShowRows()) {
    treeNeedsRedraw = true;
    return false;
  }
  // What a population from inside a call above has deferred, or begun, stays as it is.
  const bool isOvertaken = *m_population != population;
  if (!isOvertaken) {
    selectionNeedsUpdating = false;
    assocHlightsNeedsUpdating = false;
    treeNeedsRedraw = false;
  }
  // Fetched again: the host was asked a few questions in between.
  const du::SmartPtr<zelk::BaseTree> tree = guiTree.GetBaseTree();
  if (filter.IsFiltering(false)) {
    // Without a tree there would be no job to end the calculating mark.
    if (tree && !isOvertaken) {
      m_formerRows = formerRows;
      _StartFilteredPopulation(filter, population);
    }
    return false;
  }
  if (tree) {
    SetBusy(false);
    _CreateRows(*tree, population);
  }
  _Gui().RestoreExpandedAfterPopulate();
  return true;
}

bool TreeStateBase::_CanShowRows()
{
  const du::SmartPtr<zelk::View> view = guiTree.GetCurrentView();
  return _Gui().IsTreeVisibleInUI() && _Gui().IsValidView(view);
}

void TreeStateBase::_StartFilteredPopulation(structure_utils::TreeFilterInfoBase& filter, unsigned int population)
{
  SetBusy(true);
  // Without the properties that it looks at the filter waits, still busy, for the next population. A host that loads
  // them in this call may have come back with one.
  const bool areLoaded = _Gui().CheckPropsLoaded();
  if (*m_population != population) {
    // Overtaken by another state: no job will end the wait of this one.
    if (m_ownPopulation == population) {
      SetBusy(false);
    }
    return;
  }
  if (!areLoaded) {
    return;
  }
  guiTree.GetTreeController()->ApplyFilterToTree(filter, this);
  _Gui().SetTreeCalculating(true);
  _Gui().UpdateTreeTable();
}

void TreeStateBase::_CreateRows(const zelk::BaseTree& tree, unsigned int population)
{
  AddNodeVisitor visitor(this, tree, GetSelController(true));
  tree.Visit(visitor, zelk::BaseTree::VisitParentsFirst);
  m_goneMeanwhile.emplace();
  du::SmartPtr<zelk::BaseInstance> parent;
  for (const auto& instance : visitor.instances) {
    if (*m_population != population) {
      break;
    }
    if (m_goneMeanwhile->contains(instance.Get())) {
      continue;
    }
    instance->GetBaseParent(parent);
    _InstanceCreate(instance, parent, visitor.selController);
  }
  m_goneMeanwhile.reset();
  _Gui().UpdateTreeTable();
}

void TreeStateBase::_InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                                    const du::SmartPtr<zelk::BaseInstance>& parent,
                                    const du::SmartPtr<TreeSelectionController>& selController)
{
  bool assocHlight = false;
  if (_RecordRow(instance.Get(), selController, assocHlight)) {
    _Gui().InstanceCreate(instance, parent, selController, assocHlight);
  }
}

bool TreeStateBase::_RecordRow(zelk::BaseInstance* instance, const du::SmartPtr<TreeSelectionController>& selController,
                               bool& assocHlight)
{
  if (IsInstHidden(instance)) {
    return false;
  }
  // Kernels allocate instances in the order in which they visit them, as a rule, so the end of the set is where most of
  // them belong; a wrong hint costs no more than none.
  notFilteredSet.insert(notFilteredSet.end(), instance);
  assocHlight = selController && selController->IsItemAssocHlighted(du::SmartPtr<zelk::BaseInstance>(instance));
  if (assocHlight) {
    assocHlightSet.insert(instance);
  }
  return true;
}

void TreeStateBase::MadeVisible(bool visible)
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &guiTree);
  if (!visible) {
    _Gui().MadeVisible(false);
    return;
  }
  if (treeNeedsRedraw) {
    PopulateTree(false);
    return;
  }
  // The two flags that are caught up with here stay set until the next population: catching up twice does no harm.
  if (assocHlightsNeedsUpdating) {
    RefreshAssocHlights();
  }
  if (!selectionNeedsUpdating) {
    return;
  }
  if (_IsFilteringSelectionDynamically()) {
    PopulateTree(false);
    return;
  }
  _Gui().MadeVisible(true);
}

void TreeStateBase::Reset()
{
  const Pin self(this);
  SetBusy(false);
  notFilteredSet.clear();
  m_formerRows.reset();
  ++*m_population;
  if (!_HasGuiTree()) {
    return;
  }
  const Pin tree(&guiTree);
  if (guiTree.GetGuiInterface()) {
    _Gui().Reset();
    _Gui().UpdateTreeTable();
  }
}

void TreeStateBase::GetSelectedComps(std::set<du::SmartPtr<zelk::BaseInstance>>& out, bool withDescendents)
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &guiTree);
  const du::SmartPtr<TreeSelectionController> selController = GetSelController(false);
  if (!selController) {
    return;
  }
  if (!withDescendents) {
    selController->GetSelectedInstances(out);
    return;
  }
  std::set<du::SmartPtr<zelk::BaseInstance>> selected;
  selController->GetSelectedInstances(selected);
  zelk::BaseInstance::GetInstancesAndDescendents(selected, out);
}

du::SmartPtr<zelk::BaseInstance> TreeStateBase::GetBaseRoot() const
{
  du::SmartPtr<zelk::BaseInstance> root;
  if (_HasGuiTree() && guiTree.GetBaseTree()) {
    guiTree.GetBaseTree()->GetBaseRoot(root);
  }
  return root;
}

SceneInfoLog* TreeStateBase::GetCurInfoLog()
{
  return _HasGuiTree() ? guiTree.GetCurrentLog() : nullptr;
}

SceneInfoLog* TreeStateBase::GetLog(const du::SmartPtr<zelk::ShapeScene>& scene) const
{
  return _HasGuiTree() ? guiTree.GetLog(scene) : nullptr;
}

bool TreeStateBase::IsFiltered()
{
  if (!_HasGuiTree()) {
    return false;
  }
  const Pins pins(this, &guiTree);
  return _GetCurrentFilter().IsFiltering(false);
}

bool TreeStateBase::CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  if (!_HasGuiTree() || !notFilteredSet.contains(instance.Get())) {
    return false;
  }
  const Pins pins(this, &guiTree);
  guiTree.MarkTypeIconChanged(instance.Get());
  return _Gui().CheckAndUpdateNodeNameAndType(instance);
}

void TreeStateBase::SetBusy(bool isBusy)
{
  if (busy != isBusy) {
    busy = isBusy;
  }
}

int TreeStateBase::AddSmartPtrReference(const FilterObserver* observer, void* owner)
{
  return observer->AddReference(owner);
}

bool TreeStateBase::AttemptDeleteSmartPtrReference(const FilterObserver* observer, void* owner)
{
  return du::ReleaseReference(observer, owner);
}

GuiInterface& TreeStateBase::_Gui() const
{
  return *guiTree.GetGuiInterface();
}

structure_utils::TreeFilterInfoBase& TreeStateBase::_GetCurrentFilter()
{
  const du::SmartPtr<zelk::View> view = guiTree.GetCurrentView();
  return GetFilter(view);
}

}  // namespace guitree
