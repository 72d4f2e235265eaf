#pragma once

#include <cstddef>

#include "du/SmartPtr.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"
#include "zelk/BaseTree.h"

namespace bench {

/// Only what every host must have. It does nothing.
class IdleHost : public guitree::GuiInterface {
public:
  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer) override;
  void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                                   const du::HashMap<const zelk::BaseInstance*, int>* visibleChangeMap,
                                   guitree::TypeIconMap* typeIconMap,
                                   const du::HashMap<const zelk::BaseInstance*, int>* typeIconChangeMap) override;
};

/// A panel that shows one tree without a filter: a `GuiTree` with the smallest tree state that there is. The state has
/// a selection controller, which answers for each row that it is not highlighted. Nothing is populated at first.
class Panel {
public:
  /// `host` must outlive the panel.
  Panel(const du::SmartPtr<zelk::BaseTree>& tree, guitree::GuiInterface& host);

  void Populate();
  /// The rows that the tree state has recorded.
  [[nodiscard]] std::size_t GetRowCount() const;

private:
  const du::SmartPtr<guitree::GuiTree> m_guiTree;
};

}  // namespace bench
