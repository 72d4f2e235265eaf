#include "facade/SelectionObserver.h"

#include "facade/LiveGuiTree.h"
#include "guitree/GuiInterface.h"

namespace guitree {

void SelectionObserver::OnInsertItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  const Pin self(this);
  const LiveGuiTree tree(guiTree);
  if (const auto state = tree.GetState()) {
    state->OnInsertItems(items);
  }
}

void SelectionObserver::OnRemoveItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  const Pin self(this);
  const LiveGuiTree tree(guiTree);
  if (const auto state = tree.GetState()) {
    state->OnRemoveItems(items);
  }
}

void SelectionObserver::OnClearSelection()
{
  const Pin self(this);
  const LiveGuiTree tree(guiTree);
  if (const auto state = tree.GetState()) {
    state->OnClearSelection();
  }
}

void SelectionObserver::OnBeginUpdate()
{
  const Pin self(this);
  const LiveGuiTree tree(guiTree);
  if (!tree) {
    return;
  }
  ++tree->m_openBrackets;
  tree->GetGuiInterface()->StartTreeUpdate();
  if (const auto state = tree.GetState()) {
    state->OnBeginUpdate();
  }
}

void SelectionObserver::OnEndUpdate()
{
  const Pin self(this);
  const LiveGuiTree tree(guiTree);
  if (!tree) {
    return;
  }
  if (const auto state = tree.GetState()) {
    state->OnEndUpdate();
  }
  // A callback may have torn the binding down, or ended the tree: the bracket that was opened is closed all the same.
  if (tree) {
    tree->GetGuiInterface()->UpdateStatusBar();
  }
  if (tree) {
    if (tree->m_openBrackets > 0) {
      --tree->m_openBrackets;
    }
    tree->GetGuiInterface()->FinishTreeUpdate();
  }
}

}  // namespace guitree
