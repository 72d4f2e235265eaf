#pragma once

#include "guitree/StructureTreeState.h"

// begin class
class AssemblyState : public guitree::StructureTreeState {
public:
  explicit AssemblyState(guitree::GuiTree& tree) : StructureTreeState(tree, true) {}
  AssemblyState(const AssemblyState&) = delete;
  AssemblyState& operator=(const AssemblyState&) = delete;
  ~AssemblyState() override { _DetachStatusLookups(); }

  [[nodiscard]] bool GetDisplayRoot() override { return true; }
};
// end class
