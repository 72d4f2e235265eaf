#pragma once

#include <cstddef>

#include "guitree/GuiInterface.h"

namespace hostcheck {

/// Passes every call on to another host and hands back its answer: the base of what stands between a `GuiTree` and a
/// host, which overrides the calls that it looks at. Owner's thread; lives as long as a host has to.
class ForwardingHost : public guitree::GuiInterface {
public:
  /// `next` is not owned and must live as long as calls come. With null all calls end here, and the answers are the
  /// defaults of `guitree::GuiInterface`.
  explicit ForwardingHost(guitree::GuiInterface* next) : m_next(next) {}

  [[nodiscard]] guitree::GuiInterface* GetNext() const noexcept { return m_next; }
  /// How many calls have been passed on, questions included; a call counts before the next host gets it.
  [[nodiscard]] std::size_t GetCallCount() const noexcept { return m_callCount; }

  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer) override;
  void StartTreeUpdate() override;
  void FinishTreeUpdate() override;
  void ClearTree() override;
  void InitialiseBeforePopulate() override;
  void RefreshSelection() override;
  void PostOnActiveViewChanged(const du::SmartPtr<zelk::View>& view, bool wasClashReport) override;
  void UpdateStatusBar() override;
  void UpdateFilterUI() override;
  void UpdateTreeTable() override;
  void ViewChangeUpdaeFilterUI() override;
  void UpdateNodeNames() override;
  void CheckAltPartNamePrefs() override;
  void LoadSortingPrefs() override;
  void UpdateTooltips() override;
  void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                                   const du::HashMap<const zelk::BaseInstance*, int>* visibleChangeMap,
                                   guitree::TypeIconMap* typeIconMap,
                                   const du::HashMap<const zelk::BaseInstance*, int>* typeIconChangeMap) override;
  void UpdateVisAndTypeIcons(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                             guitree::TypeIconMap* typeIconMap) override;
  void UpdateQuickSearchResults(bool populated, const du::SmartPtr<zelk::View>& view, bool filterNeeded) override;
  void UnsyncInstances(bool unsynced) override;
  void StoreExpandedAndFirstVisibleBeforePopulate(bool keepExpanded) override;
  void RestoreExpandedAfterPopulate() override;
  void RestoreFirstVisible() override;
  void PostProcessingComplete() override;
  bool CheckPropsLoaded() override;
  bool CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance) override;
  void MadeVisible(bool visible) override;
  void SelectItems(std::vector<du::SmartPtr<zelk::Object>>& items) override;
  void DeselectItems(std::vector<du::SmartPtr<zelk::Object>>& items) override;
  void ClearSelection() override;
  bool SetAssocHlight(zelk::BaseInstance* instance, bool on) override;
  void InstanceCreate(guitree::FilteredTree::Node* node,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      bool repopulatePending) override;
  bool HasTypeIconChangedOnShapeInstanceRemove(guitree::SceneInfoLog* log,
                                               const du::SmartPtr<zelk::ShapeInstance>& shapeInstance) override;
  std::list<zelk::BaseInstance*>* GetNonFilteredInsts1() override;
  std::list<zelk::BaseInstance*>* GetNonFilteredInsts2() override;
  void UpdateDisplayNames() override;
  [[nodiscard]] du::Symbol GetViewTypeString(const du::SmartPtr<zelk::View>& view) const override;
  void Reset() override;
  [[nodiscard]] bool IsTreeVisibleInUI() const override;
  du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event) override;
  void FilterNodeCreate(guitree::FilteredTree::Node* node) override;
  [[nodiscard]] bool IsShowingAltPartNames() const override;
  void CurrentViewChanged() override;
  void ContentHasChanged() override;
  bool IsValidView(const du::SmartPtr<zelk::View>& view) override;
  void UpdateMarkedInsts(const du::SmartPtr<zelk::ShapeScene>& scene) override;
  void SetTreeCalculating(bool calculating) override;
  void InstanceMoved(const du::SmartPtr<zelk::illustration::SbomInstance>& instance,
                     const du::SmartPtr<guitree::TreeSelectionController>& controller) override;
  [[nodiscard]] du::SmartPtr<zelk::View> GetCS3DView() const override;
  [[nodiscard]] du::SmartPtr<zelk::View> GetCSSchView() const override;
  void CheckListTypeCorrect() override;

private:
  [[nodiscard]] guitree::GuiInterface& _Next() const;

  guitree::GuiInterface* m_next;
  mutable std::size_t m_callCount = 0;
};

}  // namespace hostcheck
