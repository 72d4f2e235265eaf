#include "guitree/GuiTreeTreeObserverHelper.h"

#include <utility>

#include "facade/LiveGuiTree.h"
#include "guitree/GuiInterface.h"

namespace guitree {
namespace {

/// The tree state of a burst's `GuiTree`, held while it is at work; null without either.
[[nodiscard]] du::SmartPtr<TreeStateBase> GetStateOf(GuiTree* tree)
{
  return tree ? du::SmartPtr<TreeStateBase>(tree->GetTreeState()) : nullptr;
}

}  // namespace

GuiTree::GuiTreeTreeObserverHelper::GuiTreeTreeObserverHelper(GuiTree* tree)
    : guiTree(tree), m_livingGuiTree(tree ? tree->GetLiveness() : nullptr)
{
}

GuiTree::GuiTreeTreeObserverHelper::~GuiTreeTreeObserverHelper() = default;

// The host is called at almost every step, and may detach the observer or end the tree from there: both are asked for
// anew after each call.

void GuiTree::GuiTreeTreeObserverHelper::Helper_OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                                                                 const du::SmartPtr<zelk::BaseInstance>& parent,
                                                                 const du::Symbol& /*name*/)
{
  const LiveGuiTree pinnedTree(_GetGuiTree());
  IncOpsDone();
  if (repopulateNeeded) {
    return;
  }
  SetChanged();
  const du::SmartPtr<TreeStateBase> state = GetStateOf(_GetGuiTree());
  if (!state) {
    return;
  }
  if (!selController) {
    selController = state->GetSelController(false);
  }
  const du::SmartPtr<TreeSelectionController> controller = selController;
  if (state->InstanceCreate(instance, parent, controller)) {
    repopulateNeeded = true;
  }
  if (GuiTree* tree = _GetGuiTree(); tree && parent) {
    tree->CheckVisibleIcon(parent);
  }
}

void GuiTree::GuiTreeTreeObserverHelper::Helper_OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                                                                 const du::SmartPtr<zelk::BaseInstance>& parent)
{
  const LiveGuiTree pinnedTree(_GetGuiTree());
  IncOpsDone();
  // Copies, since the arguments may be the last references, and the host drops its own.
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  const du::SmartPtr<zelk::BaseInstance> removed(instance);
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  const du::SmartPtr<zelk::BaseInstance> removedFrom(parent);
  if (repopulateNeeded) {
    if (const auto state = GetStateOf(_GetGuiTree())) {
      state->InstanceRemove(removed, removedFrom, true);
    }
    return;
  }
  SetChanged();
  if (const auto state = GetStateOf(_GetGuiTree()); state && state->InstanceRemove(removed, removedFrom, false)) {
    repopulateNeeded = true;
  }
  if (GuiTree* tree = _GetGuiTree(); tree && removedFrom) {
    tree->CheckVisibleIcon(removedFrom);
  }
}

void GuiTree::GuiTreeTreeObserverHelper::Helper_OnInstanceName(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  const LiveGuiTree pinnedTree(_GetGuiTree());
  IncOpsDone();
  if (repopulateNeeded) {
    return;
  }
  SetChanged();
  if (const auto state = GetStateOf(_GetGuiTree()); state && state->CheckAndUpdateNodeNameAndType(instance)) {
    repopulateNeeded = true;
  }
}

void GuiTree::GuiTreeTreeObserverHelper::Helper_OnEndUpdate()
{
  opsDone = 0;
  selController.Reset();
  if (!treeUpdateStarted && !repopulateNeeded && !nodeNamesChanged) {
    return;
  }
  const LiveGuiTree pinnedTree(_GetGuiTree());
  if (GuiTree* tree = _GetGuiTree()) {
    _CloseBracket(*tree);
  }
  if (GuiTree* tree = _GetGuiTree()) {
    tree->GetGuiInterface()->UpdateFilterUI();
  }
  if (GuiTree* tree = _GetGuiTree()) {
    tree->OnGuiTreeObserverEndUpdate(repopulateNeeded, nodeNamesChanged);
  }
  repopulateNeeded = false;
  nodeNamesChanged = false;
}

void GuiTree::GuiTreeTreeObserverHelper::IncOpsDone()
{
  ++opsDone;
  if (opsDone > s_maxSingleEdits) {
    repopulateNeeded = true;
  }
}

void GuiTree::GuiTreeTreeObserverHelper::SetChanged()
{
  GuiTree* tree = _GetGuiTree();
  if (treeUpdateStarted || !tree) {
    return;
  }
  treeUpdateStarted = true;
  ++tree->m_openBrackets;
  tree->GetGuiInterface()->StartTreeUpdate();
}

GuiTree* GuiTree::GuiTreeTreeObserverHelper::_GetGuiTree() const noexcept
{
  return guiTree && *m_livingGuiTree ? guiTree : nullptr;
}

void GuiTree::GuiTreeTreeObserverHelper::_Detach()
{
  const LiveGuiTree tree(_GetGuiTree());
  guiTree = nullptr;
  if (tree && treeUpdateStarted) {
    _CloseBracket(*tree.Get());
  }
}

void GuiTree::GuiTreeTreeObserverHelper::_CloseBracket(GuiTree& tree)
{
  // A copy may have closed the bracket already.
  if (std::exchange(treeUpdateStarted, false) && tree.m_openBrackets > 0) {
    --tree.m_openBrackets;
  }
  tree.GetGuiInterface()->FinishTreeUpdate();
}

}  // namespace guitree
