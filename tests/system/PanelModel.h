#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "FilterRules.h"
#include "LogModel.h"
#include "Rows.h"
#include "zelk/SelectionManager.h"
#include "zelk/SelectionObserver.h"
#include "zelk/ShapeSceneObserver.h"
#include "zelk/Tree.h"
#include "zelk/TreeObserver.h"

namespace systemtest {

/// What a structure panel must show, worked out beside it from the rules alone. It hears what the kernel tells and what
/// the user does, always right after the panel, and keeps plain sets and maps. Where a rule leaves a gap on purpose,
/// the model has it too:
///
/// - A filter that does not follow changes ignores what is created below an instance that is not shown, and what leaves
///   the tree without a row; the one row of a result without a match, and the root's row of a list, stay even then.
/// - A scene that is removed while it is shown leaves its marks on the rows, and a change to no view does not wipe
///   them.
/// - After a removal in a burst no parent's visible state is checked any more, until the next burst.
/// - Whether an instance counts as loaded, where its icon is worked out anew, is asked in the scene that is shown,
///   whichever scene the icon is for.
/// - What stands right below the root is spared by every filter, apart from hidden bodies.
class PanelModel {
public:
  struct View {
    /// 0 for none.
    std::size_t number = 0;
    /// Filters are kept by type.
    std::string type = "none";
    du::SmartPtr<zelk::Scene> scene;
    du::SmartPtr<zelk::SelectionManager> selection;
  };

  explicit PanelModel(const du::SmartPtr<zelk::Tree>& tree, const View& start);

  // What the user does, and what the host answers.
  void SetFilter(const FilterSettings& settings);
  /// Filters and results list of another model.
  void TakeFilters(const PanelModel& other)
  {
    m_filters = other.m_filters;
    m_results = other.m_results;
  }
  void ChangeView(const View& view);
  void AddScene(const du::SmartPtr<zelk::Scene>& scene);
  void RemoveScene(const du::SmartPtr<zelk::Scene>& scene);
  void SetVisible(bool visible);
  void SetPropsLoaded(bool areLoaded) { m_arePropsLoaded = areLoaded; }
  void SetRefusesNames(bool refuses) { m_refusesNames = refuses; }
  void ShowBodiesChanged();
  void CollapseChanged();
  void SetResults(std::shared_ptr<const std::set<BasePtr>> results);
  void OpenBranch();
  void CancelJob();
  void Populate();

  // What the workers do.
  [[nodiscard]] bool HasJobs() const { return !m_jobs.empty(); }
  /// The oldest job works, and is then done. `isCancelled` as for `FilterRun`.
  void WorkOnJob(bool isCancelled);
  void EndJob();
  /// `request` is called where the panel must have asked for a load.
  using Request = std::function<void(const zelk::Shape& shape, std::function<void()> onEnded)>;
  void SetRequest(Request request) { m_request = std::move(request); }

  // What the kernel tells.
  void OnInstanceCreate(const BasePtr& instance, const BasePtr& parent);
  void OnInstanceRemove(const BasePtr& instance, const BasePtr& parent);
  void OnInstanceName(const BasePtr& instance);
  void OnInstanceExpanded(const BasePtr& instance);
  void OnInstanceCollapsed(const BasePtr& instance);
  void OnInstanceProxyToNode(const BasePtr& instance);
  void OnDisplayNamesChanged();
  void OnTreeColumnsChanged();
  void OnTreeEndUpdate();
  using ShapePtr = du::SmartPtr<zelk::ShapeInstance>;
  void OnShapeCreate(const du::SmartPtr<zelk::Scene>& scene, const ShapePtr& shapeInstance);
  void OnShapeRemove(const du::SmartPtr<zelk::Scene>& scene, const ShapePtr& shapeInstance);
  void OnShapeVisibility(const du::SmartPtr<zelk::Scene>& scene, const ShapePtr& shapeInstance, bool visible);
  void OnCompared(const du::SmartPtr<zelk::Scene>& scene, const ShapePtr& shapeInstance);
  void OnApplyTreeUpdate();
  void OnSceneEndUpdate(const du::SmartPtr<zelk::Scene>& scene);
  using Items = std::vector<du::SmartPtr<zelk::SelectionItem>>;
  void OnSelected(const std::vector<du::SmartPtr<zelk::Object>>& items, bool isSelected);
  void OnSelectionCleared();
  void OnSelectionEndUpdate();
  void OnHighlightChanged(bool clearFirst, const Items& removed, const Items& added);

  // What must be seen.
  [[nodiscard]] const Rows& GetRows() const { return m_rows; }
  [[nodiscard]] const std::set<const zelk::BaseInstance*>& GetShown() const { return m_shown; }
  [[nodiscard]] const std::set<const zelk::BaseInstance*>& GetHighlighted() const { return m_highlighted; }
  [[nodiscard]] bool IsBusy() const { return m_isBusy; }
  [[nodiscard]] bool IsCalculating() const { return m_isCalculating; }
  [[nodiscard]] bool NeedsRedraw() const { return m_needsRedraw; }
  [[nodiscard]] bool NeedsSelection() const { return m_needsSelection; }
  [[nodiscard]] bool NeedsHighlights() const { return m_needsHighlights; }
  [[nodiscard]] std::size_t GetPopulations() const { return m_populations; }
  [[nodiscard]] const LogModel* FindLog(const du::SmartPtr<zelk::Scene>& scene) const;
  [[nodiscard]] bool HasPendingLoads() const { return !m_pending.empty(); }
  [[nodiscard]] const FilterSettings& GetFilter() const { return m_filters.at(m_view.type); }
  [[nodiscard]] const FilterSettings& GetFilterOf(const std::string& type) { return m_filters[type]; }
  /// Whether the rows are a cancelled result whose root can be opened.
  [[nodiscard]] bool CanOpenBranch() const;

private:
  struct Job {
    FilterRun run;
    bool isCancelled = false;
    FilterResult result;
  };
  using LogMap = std::map<du::SmartPtr<zelk::Scene>, LogModel>;

  [[nodiscard]] FilterSettings& _Filter() { return m_filters[m_view.type]; }
  [[nodiscard]] BasePtr _GetRoot() const;
  [[nodiscard]] LogModel* _GetLog(const du::SmartPtr<zelk::Scene>& scene);
  [[nodiscard]] LogModel* _GetCurrentLog();
  [[nodiscard]] du::SmartPtr<zelk::ShapeScene> _GetShownScene();
  [[nodiscard]] bool _IsListed(unsigned int list, const BasePtr& instance) const;

  void _CreateAll(const BasePtr& instance);
  void _CreateRow(const BasePtr& instance, const std::vector<BasePtr>& ancestors);
  void _AddRow(const BasePtr& instance, const std::vector<BasePtr>& ancestors, bool isHighlighted);
  void _ShowResult();
  void _WriteList();
  void _Visit(const FilterResult::Node& node, std::vector<BasePtr> ancestors);
  [[nodiscard]] bool _Remove(const BasePtr& instance);
  [[nodiscard]] bool _CheckNameAndType(const BasePtr& instance);
  void _CheckVisible(const BasePtr& instance);
  void _MarkIcon(const BasePtr& instance);
  void _CountEdit() { m_repopulates = ++m_edits > 200 || m_repopulates; }
  void _ReadNames();
  void _ReadSelection();
  void _FinishBracket();
  void _SetHighlight(const zelk::BaseInstance* instance, bool on);
  void _HighlightAll();
  void _RefreshHighlights();
  void _PaintAll(LogModel& log);
  void _PaintChanges(const LogModel& log);
  void _EndLoad(const ShapePtr& shapeInstance, const du::SmartPtr<zelk::Scene>& scene);
  [[nodiscard]] bool _RecordLoad(LogModel& log, const zelk::ShapeInstance& shapeInstance);

  const du::SmartPtr<zelk::Tree> m_tree;
  View m_view;
  std::map<std::string, FilterSettings> m_filters;
  std::shared_ptr<const std::set<BasePtr>> m_results;
  LogMap m_logs;
  /// The scene that is shown, where it has a log; it is not replaced when that log goes.
  du::SmartPtr<zelk::Scene> m_current;
  std::set<const zelk::Scene*> m_fullRepaint;
  Request m_request;
  std::vector<ShapePtr> m_pending;
  std::vector<std::pair<ShapePtr, du::SmartPtr<zelk::Scene>>> m_finished;

  bool m_isVisible = true;
  bool m_arePropsLoaded = true;
  bool m_refusesNames = false;

  Rows m_rows;
  std::set<const zelk::BaseInstance*> m_shown;
  std::set<const zelk::BaseInstance*> m_highlighted;
  bool m_isSelectionStale = false;
  bool m_isBusy = false;
  bool m_isCalculating = false;
  bool m_needsRedraw = false;
  bool m_needsSelection = false;
  bool m_needsHighlights = false;
  std::size_t m_populations = 0;
  std::deque<Job> m_jobs;
  FilterResult m_result;
  bool m_areRowsOfResult = false;

  // Of the burst under way.
  std::size_t m_edits = 0;
  bool m_hasStarted = false;
  bool m_repopulates = false;
  bool m_namesChanged = false;
};

}  // namespace systemtest
