#pragma once

#include <functional>
#include <vector>

#include "Rows.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"

namespace systemtest {

/// A host that keeps its rows as a tree by instance, with all that a row shows: a real one, without a screen.
class TreeHost : public guitree::GuiInterface {
public:
  // What it answers.
  bool isVisible = true;
  bool arePropsLoaded = true;
  bool refusesNames = false;
  std::function<du::Symbol(const du::SmartPtr<zelk::View>& view)> typeOf;
  /// A fault to be found: rows of these instances are lost.
  std::function<bool(const zelk::BaseInstance& instance)> losesRow;

  // What it was told.
  Rows rows;
  bool isCalculating = false;
  std::size_t clears = 0;
  du::SmartPtr<SceneManagerObserver> reports;
  /// Those started since the last time that somebody looked.
  std::vector<du::SmartPtr<zelk::AsyncEvent>> jobs;

  void SetPanel(guitree::GuiTree* panel) { m_panel = panel; }

  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer) override { reports = observer; }
  void StartTreeUpdate() override { ++m_depth; }
  void FinishTreeUpdate() override;
  void ClearTree() override;
  void Reset() override { rows.Clear(); }
  void RefreshSelection() override { _ReadSelection(); }
  void MadeVisible(bool visible) override;
  void UpdateNodeNames() override { _ReadNames(); }
  void UpdateDisplayNames() override { _ReadNames(); }
  void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                                   const du::HashMap<const zelk::BaseInstance*, int>* visibleChangeMap,
                                   guitree::TypeIconMap* typeIconMap,
                                   const du::HashMap<const zelk::BaseInstance*, int>* typeIconChangeMap) override;
  void UpdateVisAndTypeIcons(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                             guitree::TypeIconMap* typeIconMap) override;
  bool CheckPropsLoaded() override { return arePropsLoaded; }
  bool CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance) override;
  void SelectItems(std::vector<du::SmartPtr<zelk::Object>>& items) override { _Mark(items, true); }
  void DeselectItems(std::vector<du::SmartPtr<zelk::Object>>& items) override { _Mark(items, false); }
  void ClearSelection() override;
  bool SetAssocHlight(zelk::BaseInstance* instance, bool on) override;
  void InstanceCreate(guitree::FilteredTree::Node* node,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      bool repopulatePending) override;
  [[nodiscard]] du::Symbol GetViewTypeString(const du::SmartPtr<zelk::View>& view) const override;
  [[nodiscard]] bool IsTreeVisibleInUI() const override { return isVisible; }
  du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event) override;
  void FilterNodeCreate(guitree::FilteredTree::Node* node) override;
  void SetTreeCalculating(bool calculating) override { isCalculating = calculating; }

private:
  void _Add(const BasePtr& instance, const std::vector<BasePtr>& ancestors,
            const du::SmartPtr<guitree::TreeSelectionController>& controller, bool isHighlighted);
  void _ReadNames();
  void _ReadSelection();
  void _Mark(const std::vector<du::SmartPtr<zelk::Object>>& items, bool isSelected);

  guitree::GuiTree* m_panel = nullptr;
  int m_depth = 0;
  /// Where one row stands for several instances, the marks are read as a whole at the end of a batch.
  bool m_isSelectionStale = false;
};

}  // namespace systemtest
