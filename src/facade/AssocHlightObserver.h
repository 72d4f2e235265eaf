#pragma once

#include <vector>

#include "zelk/SelectionObserver.h"

namespace guitree {

class GuiTree;

/// Listens to the associated highlight list for a `GuiTree`, which clears the back pointer when the binding is torn
/// down.
class AssocHlightObserver : public zelk::SelectionObserver {
public:
  explicit AssocHlightObserver(GuiTree* tree) : guiTree(tree) {}

  void OnSelectionChanged(unsigned int list, bool clearFirst,
                          const std::vector<du::SmartPtr<zelk::SelectionItem>>& removed,
                          const std::vector<du::SmartPtr<zelk::SelectionItem>>& added) override;

  GuiTree* guiTree;
};

}  // namespace guitree
