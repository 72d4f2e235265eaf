// How the result of a filter becomes rows.

#include "facade/Pin.h"
#include "facade/TreeUpdateScope.h"
#include "filter/NodeLinks.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeController.h"
#include "guitree/TreeStateBase.h"
#include "state/FormerRows.h"
#include "state/VisitScope.h"

namespace guitree {
void TreeStateBase::OnProcessingComplete(const du::SmartPtr<zelk::BaseTree>& tree, GuiInterface* gui)
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &guiTree);
  const auto formerRows = std::exchange(m_formerRows, nullptr);
  const unsigned int population = *m_population;
  SetBusy(false);
  if (gui && gui == guiTree.GetGuiInterface()) {
    gui->SetTreeCalculating(false);
  }
  if (tree != guiTree.GetBaseTree() || guiTree.GetTreeState() != this) {
    return;
  }
  du::SmartPtr<FilteredTree> result;
  GetFilteredTree(result);
  // A population from inside the call above has taken the rows over.
  if (!result || *m_population != population) {
    return;
  }
  RemoveHiddenNotFilteredItems(result);
  _ShowResult(*result, population);
  _Gui().RestoreFirstVisible();
}

void TreeStateBase::_ShowResult(FilteredTree& tree, unsigned int population)
{
  const TreeUpdateScope update(_Gui());
  if (FilteredTree::Node* const root = tree.GetRoot()) {
    _VisitBranches({root}, population);
  }
  _Gui().PostProcessingComplete();
  _Gui().UpdateTreeTable();
  _Gui().RestoreExpandedAfterPopulate();
}

void TreeStateBase::_VisitBranches(const std::list<FilteredTree::Node*>& branches, unsigned int population)
{
  const du::SmartPtr<TreeSelectionController> selController = GetSelController(true);
  const VisitScope visit(*this, population);
  for (FilteredTree::Node* const branch : branches) {
    _VisitFilteredTreeNode(branch, selController);
  }
}

void TreeStateBase::_VisitFilteredTreeNode(FilteredTree::Node* node,
                                           const du::SmartPtr<TreeSelectionController>& selController)
{
  if (_IsVisitOvertaken()) {
    return;
  }
  if (IsPlaceholder(node)) {
    _Gui().FilterNodeCreate(node->parent);
    return;
  }
  if (_HasGoneMeanwhile(node->instance)) {
    return;
  }
  _InstanceCreate(node, selController);
  // What leaves the tree on the way leaves it with all that is below it.
  for (FilteredTree::Node* child = node->firstChild; child && !_HasGoneMeanwhile(node->instance);
       child = child->nextSibling) {
    if (!_IsOpenedMeanwhile(child)) {
      _VisitFilteredTreeNode(child, selController);
    }
  }
}

bool TreeStateBase::_IsVisitOvertaken() const noexcept
{
  return m_visitedPopulation && *m_visitedPopulation != *m_population;
}

bool TreeStateBase::_HasGoneMeanwhile(const zelk::BaseInstance* instance) const
{
  return m_goneMeanwhile && m_goneMeanwhile->contains(instance);
}

bool TreeStateBase::_IsOpenedMeanwhile(const FilteredTree::Node* node) const
{
  return m_openedMeanwhile.contains(node);
}

void TreeStateBase::_NoteOpened(const std::list<FilteredTree::Node*>& branches, const du::SmartPtr<FilteredTree>& tree)
{
  if (!m_visitedPopulation) {
    return;
  }
  for (const FilteredTree::Node* const branch : branches) {
    // Without the row above them these rows have no place yet: the visit brings them there.
    if (notFilteredSet.contains(branch->parent->instance)) {
      m_openedMeanwhile.emplace(branch, tree);
    }
  }
}

void TreeStateBase::_InstanceCreate(FilteredTree::Node* node,
                                    const du::SmartPtr<TreeSelectionController>& selController)
{
  bool assocHlight = false;
  if (_RecordRow(node->instance, selController, assocHlight)) {
    _Gui().InstanceCreate(node, selController, assocHlight);
  }
}

void TreeStateBase::GetFilteredTree(du::SmartPtr<FilteredTree>& out) const
{
  if (_HasGuiTree() && guiTree.GetTreeController()) {
    out = guiTree.GetTreeController()->GetFilteredTree();
  }
}

void TreeStateBase::RemoveHiddenNotFilteredItems(const du::SmartPtr<FilteredTree>& tree)
{
  if (GetDisplayRoot()) {
    return;
  }
  const du::SmartPtr<zelk::BaseInstance> root = GetBaseRoot();
  if (root && tree) {
    tree->RemoveHiddenItem(root);
  }
}

namespace {

/// Null where the path leads nowhere.
FilteredTree::Node* FindNode(FilteredTree::Node* root, const std::list<zelk::BaseInstance*>& path)
{
  FilteredTree::Node* siblings = root;
  FilteredTree::Node* node = nullptr;
  for (const zelk::BaseInstance* const step : path) {
    node = siblings;
    while (node && node->instance != step) {
      node = node->nextSibling;
    }
    if (!node) {
      return nullptr;
    }
    siblings = node->firstChild;
  }
  return node;
}

}  // namespace

bool TreeStateBase::ExpandFilterNode(const std::list<zelk::BaseInstance*>& path)
{
  if (!_HasGuiTree() || busy) {
    return false;
  }
  const Pins pins(this, &guiTree);
  du::SmartPtr<FilteredTree> tree;
  GetFilteredTree(tree);
  const FilteredTree::Node* const node = tree ? FindNode(tree->GetRoot(), path) : nullptr;
  if (!node || !IsPlaceholder(node->lastChild)) {
    return false;
  }
  const unsigned int population = *m_population;
  const TreeUpdateScope update(_Gui());
  std::list<FilteredTree::Node*> created;
  // The host may have opened it by itself from inside the call above.
  if (IsPlaceholder(node->lastChild)) {
    tree->ExpandNode(node->lastChild, &created);
  }
  _VisitBranches(created, population);
  _NoteOpened(created, tree);
  _Gui().UpdateTreeTable();
  return true;
}

void TreeStateBase::_ApplyInfos(void* infos, const du::SmartPtr<TreeSelectionController>& selController)
{
  for (InstanceInfo& info : *static_cast<std::vector<InstanceInfo>*>(infos)) {
    du::SmartPtr<zelk::BaseInstance> parent;
    info.instance->GetBaseParent(parent);
    _InstanceCreate(info.instance, parent, selController);
    _ApplyInfos(&info.children, selController);
  }
}

}  // namespace guitree
