#pragma once

#include <vector>

#include "zelk/SelectionObserver.h"

namespace guitree {

class GuiTree;

/// Listens to the selection list for a `GuiTree`, which clears the back pointer when the binding is torn down.
class SelectionObserver : public zelk::SelectionObserver {
public:
  explicit SelectionObserver(GuiTree* tree) : guiTree(tree) {}

  void OnInsertItems(std::vector<du::SmartPtr<zelk::Object>>& items) override;
  void OnRemoveItems(std::vector<du::SmartPtr<zelk::Object>>& items) override;
  void OnClearSelection() override;
  void OnBeginUpdate() override;
  void OnEndUpdate() override;

  GuiTree* guiTree;
};

}  // namespace guitree
