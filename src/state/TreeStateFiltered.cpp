// How the result of a filter becomes rows.

#include <algorithm>

#include "facade/Pin.h"
#include "facade/TreeUpdateScope.h"
#include "filter/NodeLinks.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeController.h"
#include "guitree/TreeStateBase.h"

namespace guitree {

void TreeStateBase::OnProcessingComplete(const du::SmartPtr<zelk::BaseTree>& tree, GuiInterface* gui)
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &guiTree);
  SetBusy(false);
  if (gui && gui == guiTree.GetGuiInterface()) {
    gui->SetTreeCalculating(false);
  }
  if (tree != guiTree.GetBaseTree() || guiTree.GetTreeState() != this) {
    return;
  }
  du::SmartPtr<FilteredTree> result;
  GetFilteredTree(result);
  if (!result) {
    return;
  }
  RemoveHiddenNotFilteredItems(result);
  _ShowResult(*result);
  _Gui().RestoreFirstVisible();
}

void TreeStateBase::_ShowResult(FilteredTree& tree)
{
  const TreeUpdateScope update(_Gui());
  if (FilteredTree::Node* const root = tree.GetRoot()) {
    _VisitBranches({root});
  }
  _Gui().PostProcessingComplete();
  _Gui().UpdateTreeTable();
  _Gui().RestoreExpandedAfterPopulate();
}

void TreeStateBase::_VisitBranches(const std::list<FilteredTree::Node*>& branches)
{
  const du::SmartPtr<TreeSelectionController> selController = GetSelController(true);
  m_visitedPopulation = m_population;
  m_goneMeanwhile.emplace();
  for (FilteredTree::Node* const branch : branches) {
    _VisitFilteredTreeNode(branch, selController);
  }
  m_goneMeanwhile.reset();
}

void TreeStateBase::_VisitFilteredTreeNode(FilteredTree::Node* node,
                                           const du::SmartPtr<TreeSelectionController>& selController)
{
  if (m_visitedPopulation != m_population) {
    return;
  }
  if (IsPlaceholder(node)) {
    _Gui().FilterNodeCreate(node->parent);
    return;
  }
  // What leaves the tree meanwhile leaves it with all that is below it.
  if (m_goneMeanwhile && m_goneMeanwhile->contains(node->instance)) {
    return;
  }
  _InstanceCreate(node, selController);
  for (FilteredTree::Node* child = node->firstChild; child; child = child->nextSibling) {
    _VisitFilteredTreeNode(child, selController);
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
  const TreeUpdateScope update(_Gui());
  std::list<FilteredTree::Node*> created;
  tree->ExpandNode(node->lastChild, &created);
  _VisitBranches(created);
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
