#pragma once

#include <string>
#include <vector>

#include "Rows.h"
#include "guitree/GuiTree.h"
#include "hostcheck/ForwardingHost.h"

namespace systemtest {

/// Another host beside that of the stage: it hears the same calls, and must show the same rows.
class SecondHost {
public:
  SecondHost() = default;
  SecondHost(const SecondHost&) = delete;
  SecondHost& operator=(const SecondHost&) = delete;
  virtual ~SecondHost() = default;

  virtual void SetPanel(guitree::GuiTree* panel) = 0;
  [[nodiscard]] virtual guitree::GuiInterface& GetHost() = 0;
  /// As `Rows::ToText`, without state and icon where no scene is shown. `rows` are those of the other host. Where it
  /// has been told of less than what a row shows by now, and nobody had to tell, its word may be taken.
  [[nodiscard]] virtual std::vector<std::string> ToText(Rows& rows) const = 0;
  /// Opens the placeholder of a row through the panel; answers whether it could.
  virtual bool Open(zelk::BaseInstance& instance) = 0;
};

/// Passes each call on to a host, whose answers count, and then to a second one where there is one.
class TwinHost : public hostcheck::ForwardingHost {
public:
  explicit TwinHost(guitree::GuiInterface* first) : ForwardingHost(first) {}

  void SetSecond(guitree::GuiInterface* second) { m_second = second; }

  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer) override;
  void StartTreeUpdate() override;
  void FinishTreeUpdate() override;
  void ClearTree() override;
  void RefreshSelection() override;
  void UpdateStatusBar() override;
  void UpdateFilterUI() override;
  void UpdateTreeTable() override;
  void UpdateNodeNames() override;
  void LoadSortingPrefs() override;
  void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                                   const du::HashMap<const zelk::BaseInstance*, int>* visibleChangeMap,
                                   guitree::TypeIconMap* typeIconMap,
                                   const du::HashMap<const zelk::BaseInstance*, int>* typeIconChangeMap) override;
  void UpdateVisAndTypeIcons(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                             guitree::TypeIconMap* typeIconMap) override;
  void StoreExpandedAndFirstVisibleBeforePopulate(bool keepExpanded) override;
  void RestoreExpandedAfterPopulate() override;
  void RestoreFirstVisible() override;
  void PostProcessingComplete() override;
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
  void UpdateDisplayNames() override;
  void Reset() override;
  void FilterNodeCreate(guitree::FilteredTree::Node* node) override;
  void CurrentViewChanged() override;
  void SetTreeCalculating(bool calculating) override;

private:
  template <typename Call>
  void _Tell(Call call);

  guitree::GuiInterface* m_second = nullptr;
};

}  // namespace systemtest
