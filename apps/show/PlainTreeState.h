#pragma once

#include "guitree/WorldTreeState.h"
#include "zelremote/StructureFilterInfo.h"

/// A panel that shows the world's tree as it is: everything, in the kernel's order, with the selection and the scene of
/// the current view. Lives as every tree state does; owner's thread.
class PlainTreeState final : public guitree::WorldTreeState {
public:
  explicit PlainTreeState(guitree::GuiTree& tree);

  /// Tells apart proxies, bodies, shapes that have failed in `scene`, and what has nothing to load; all else is plain.
  [[nodiscard]] int GetUnloadedTypeIcon(const zelk::BaseInstance* instance,
                                        const du::SmartPtr<zelk::Scene>& scene) override;
  /// The same for every view, and nothing is filtered.
  [[nodiscard]] structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& view) override;

private:
  zelremote::StructureFilterInfo m_filter;
};
