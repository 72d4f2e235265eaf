#pragma once

#include "guitree/TreeStateBase.h"
#include "zelremote/StructureFilterInfo.h"

/// A panel that shows the world's tree as it is: everything, in the kernel's order, without selection and without
/// scenes. It does not observe the tree, so it is for trees that are complete when the panel is initialised. Lives as
/// every tree state does; owner's thread.
class PlainTreeState final : public guitree::TreeStateBase {
public:
  explicit PlainTreeState(guitree::GuiTree& tree);

  /// The tree of the running world, for every view; null while no kernel runs.
  du::SmartPtr<zelk::BaseTree> Initialise_GetZelkTree(const du::SmartPtr<zelk::View>& view) override;
  [[nodiscard]] du::SmartPtr<guitree::TreeSelectionController> GetSelController(bool forRows) const override;
  [[nodiscard]] bool HaveSelController() const override { return false; }
  [[nodiscard]] bool HasInstGotThumbnail(const du::SmartPtr<zelk::BaseInstance>& instance) const override;
  void CreateAndRegisterTreeObserver() override {}
  void DeregisterTreeObserver() override {}
  /// False: shapes are loaded into scenes, and there is none.
  [[nodiscard]] bool IsInstLoaded(const zelk::BaseInstance* instance) override;
  [[nodiscard]] guitree::SceneInfoLog* CreateSceneInfoLog() override;
  /// What can be told without a scene: proxies, and whether there is anything to load.
  [[nodiscard]] int GetUnloadedTypeIcon(const zelk::BaseInstance* instance,
                                        const du::SmartPtr<zelk::Scene>& scene) override;
  [[nodiscard]] structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& view) override;

private:
  zelremote::StructureFilterInfo m_filter;
};
