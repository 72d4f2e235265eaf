#pragma once

#include <cstddef>

#include "du/SmartPtr.h"
#include "guitree/GuiTree.h"
#include "guitree/StructureTreeState.h"
#include "memkernel/ShapeScene.h"
#include "memkernel/Tree.h"
#include "memkernel/World.h"
#include "support/Panel.h"
#include "zelremote/StructureFilterInfo.h"

namespace bench {

/// A host that creates no row, and counts what it is told.
class CountingHost final : public IdleHost {
public:
  using IdleHost::InstanceCreate;
  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceCreate(guitree::FilteredTree::Node* node,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                                   const du::HashMap<const zelk::BaseInstance*, int>* visibleChangeMap,
                                   guitree::TypeIconMap* typeIconMap,
                                   const du::HashMap<const zelk::BaseInstance*, int>* typeIconChangeMap) override;

  std::size_t rows = 0;
  std::size_t sceneUpdates = 0;
};

/// A panel with the state of a structure panel, over a world of its own with one worker. One a process, since the world
/// is installed for it.
class StructurePanel {
public:
  /// Filled with the rows of `tree`.
  explicit StructurePanel(const du::SmartPtr<memkernel::Tree>& tree);
  StructurePanel(const StructurePanel&) = delete;
  StructurePanel& operator=(const StructurePanel&) = delete;
  ~StructurePanel();

  [[nodiscard]] CountingHost& GetHost() noexcept { return m_host; }
  [[nodiscard]] memkernel::World& GetWorld() const noexcept { return *m_world; }
  [[nodiscard]] guitree::GuiTree& GetGuiTree() const noexcept { return *m_guiTree; }
  [[nodiscard]] guitree::StructureTreeState& GetState() const noexcept { return *m_state; }
  [[nodiscard]] zelremote::StructureFilterInfo& GetFilter() const;
  /// Until no job and no load is under way and nothing is due.
  void Settle();

private:
  CountingHost m_host;
  const du::SmartPtr<memkernel::World> m_world;
  const du::SmartPtr<guitree::GuiTree> m_guiTree;
  const du::SmartPtr<guitree::StructureTreeState> m_state;
};

}  // namespace bench
