#pragma once

#include "guitree/StructureTreeState.h"

// begin class
class AssemblyState : public guitree::StructureTreeState {
public:
  explicit AssemblyState(guitree::GuiTree& tree) : StructureTreeState(tree, true) {}

  [[nodiscard]] bool GetDisplayRoot() override { return true; }
};
// end class
