#pragma once

#include <cstddef>
#include <vector>

#include "du/SmartPtr.h"
#include "guitree/GuiTree.h"
#include "guitree/WorldTreeState.h"
#include "memkernel/SelectionManager.h"
#include "memkernel/ShapeScene.h"
#include "memkernel/Tree.h"
#include "memkernel/View.h"
#include "memkernel/World.h"
#include "support/Panel.h"

namespace bench {

/// A panel that follows everything: the world's tree, a selection, and any number of scenes. One a process, since the
/// world is installed for it.
class LivePanel {
public:
  /// Filled with the rows of `tree`.
  LivePanel(const du::SmartPtr<memkernel::Tree>& tree, guitree::GuiInterface& host);
  LivePanel(const LivePanel&) = delete;
  LivePanel& operator=(const LivePanel&) = delete;
  ~LivePanel();

  /// A scene in which every instance of the tree is visible, with a view that is not shown yet.
  du::SmartPtr<memkernel::ShapeView> AddScene();
  void Show(const du::SmartPtr<memkernel::ShapeView>& view) { m_guiTree->OnActiveViewChanged(view); }

  /// The selection of the world and of all scenes.
  [[nodiscard]] memkernel::SelectionManager& GetSelection() const noexcept { return *m_selection; }
  [[nodiscard]] guitree::GuiTree& GetGuiTree() const noexcept { return *m_guiTree; }
  [[nodiscard]] const std::vector<du::SmartPtr<zelk::Instance>>& GetInstances() const noexcept { return m_instances; }
  [[nodiscard]] std::size_t GetRowCount() const;

private:
  const du::SmartPtr<memkernel::Tree> m_tree;
  const du::SmartPtr<memkernel::World> m_world;
  const du::SmartPtr<memkernel::SelectionManager> m_selection;
  const du::SmartPtr<guitree::GuiTree> m_guiTree;
  std::vector<du::SmartPtr<zelk::Instance>> m_instances;
  std::vector<du::SmartPtr<memkernel::ShapeScene>> m_scenes;
};

}  // namespace bench
