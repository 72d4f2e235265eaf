#include "facade/AssocHlightObserver.h"

#include "facade/LiveGuiTree.h"

namespace guitree {

void AssocHlightObserver::OnSelectionChanged(unsigned int /*list*/, bool clearFirst,
                                             const std::vector<du::SmartPtr<zelk::SelectionItem>>& removed,
                                             const std::vector<du::SmartPtr<zelk::SelectionItem>>& added)
{
  const Pin self(this);
  const LiveGuiTree tree(guiTree);
  if (const auto state = tree.GetState()) {
    state->OnAssocHlightChanged(clearFirst, removed, added);
  }
}

}  // namespace guitree
