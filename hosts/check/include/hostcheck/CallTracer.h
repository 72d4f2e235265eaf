#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "hostcheck/ForwardingHost.h"

namespace hostcheck {

/// How `CallTracer` writes the maps of visible states and type icons.
struct MapStyle {
  /// For people: of the map of all states its size, of the changes what was and what is, as in `bolt: visible ->
  /// hidden` and `bolt: 0 -> 1`. `-all` and `-mixed` behind a state tell of the children; an icon that was not known
  /// before reads `bolt: -> 1`. Without words all entries are written, by their numbers.
  bool words = false;
  /// As a host walks the map. That order follows addresses: by name, as it is otherwise, the lines of two runs are the
  /// same.
  bool listOrder = false;
};

/// Writes every call with its arguments as one line of text, in the order in which the calls come, and passes it on:
/// `InstanceCreate(bolt, parent=plate, controller=no, assoc=false)`. A call with an answer comes with it, as in
/// `IsTreeVisibleInUI() -> true`, once the next host has given it; all others are written before they are passed on.
/// Objects stand by their names, what has no name by `yes` or `no`.
class CallTracer : public ForwardingHost {
public:
  using Sink = std::function<void(const std::string& line)>;
  using Namer = std::function<std::string(const zelk::Object& object)>;

  /// `sink` gets the lines, without an end of line, and may be empty. `next` as for `ForwardingHost`.
  CallTracer(guitree::GuiInterface* next, Sink sink) : ForwardingHost(next), m_sink(std::move(sink)) {}

  /// How objects are named. Without a namer, and with an empty one, by `zelk::Object::GetObjectName`, or `unnamed`.
  void SetNamer(Namer namer) { m_namer = std::move(namer); }
  void SetMapStyle(const MapStyle& style) { m_mapStyle = style; }
  /// Whether calls that only ask are written; they are from the start. A call that also tells is always written.
  void SetShowQuestions(bool show) noexcept { m_showQuestions = show; }

  /// Keeps the name of `instance` for the places where it comes as an identity, which must not be dereferenced.
  /// Instances that come with `InstanceCreate`, that get the associated highlight or whose names are checked are
  /// remembered by themselves; one that was never seen is written as `?`.
  void RememberName(const zelk::BaseInstance& instance) const;

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

protected:
  /// A line is complete. Hands it to the sink.
  virtual void _OnLine(const std::string& line) const;

private:
  void _OnCall(const std::string& line) const { _OnLine(line); }
  void _OnQuestion(const std::string& line) const;

  [[nodiscard]] std::string _NameOf(const zelk::Object* object) const;
  [[nodiscard]] std::string _NameOfIdentity(const zelk::BaseInstance* instance) const;
  [[nodiscard]] std::string _NameOfRow(const zelk::BaseInstance* instance) const;
  [[nodiscard]] std::string _NameOfNode(const guitree::FilteredTree::Node* node) const;
  [[nodiscard]] std::string _NameOfItem(const zelk::Object* item) const;
  [[nodiscard]] std::string _ShowItems(const std::vector<du::SmartPtr<zelk::Object>>& items) const;
  [[nodiscard]] std::string _ShowInstances(const std::list<zelk::BaseInstance*>* instances) const;
  template <typename Map, typename ShowValue>
  [[nodiscard]] std::string _ShowEntries(const Map* map, ShowValue showValue) const;
  /// All of a map, or its size.
  template <typename Map>
  [[nodiscard]] std::string _ShowWhole(const Map* map) const;
  [[nodiscard]] std::string _ShowVisibleChanges(const du::HashMap<const zelk::BaseInstance*, int>* changes) const;
  [[nodiscard]] std::string _ShowIconChanges(const du::HashMap<const zelk::BaseInstance*, int>* changes) const;
  /// For the next call that tells of changes.
  template <typename Map>
  void _RememberIcons(const Map* map);

  Sink m_sink;
  Namer m_namer;
  MapStyle m_mapStyle;
  bool m_showQuestions = true;
  /// The icons as the calls have told them; kept only for `MapStyle::words`.
  mutable std::unordered_map<const zelk::BaseInstance*, int> m_icons;
  mutable std::unordered_map<const zelk::BaseInstance*, std::string> m_names;
};

}  // namespace hostcheck
