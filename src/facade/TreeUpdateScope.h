#pragma once

#include "guitree/GuiInterface.h"

namespace guitree {

/// The bracket around host calls that change rows.
class TreeUpdateScope {
public:
  explicit TreeUpdateScope(GuiInterface& gui) : m_gui(gui) { m_gui.StartTreeUpdate(); }
  ~TreeUpdateScope() { m_gui.FinishTreeUpdate(); }
  TreeUpdateScope(const TreeUpdateScope&) = delete;
  TreeUpdateScope& operator=(const TreeUpdateScope&) = delete;

private:
  GuiInterface& m_gui;
};

}  // namespace guitree
