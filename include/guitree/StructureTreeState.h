#pragma once

#include <memory>

#include "du/HashMap.h"
#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "guitree/WorldTreeState.h"
#include "structure_utils/TreeFilterAdditionalInfo.h"
#include "structure_utils/TreeResultsList.h"

namespace zelremote {
class StructureFilterInfo;
}  // namespace zelremote

namespace guitree {

/// The tree state of a structure panel: one filter for each type of view, the presentation of what it leaves as tree or
/// as list, the icon of each row, and what has an issue. Lives and threads as `WorldTreeState`; the status of an
/// instance may be asked for on any thread, also while the state ends.
///
/// Belongs to the library guitree::structurestate, which needs that of the structure filter.
class StructureTreeState : public WorldTreeState,
                           public structure_utils::TreeFilterAdditionalInfo::TreeFilterStatusLookup {
public:
  /// Without `allowsResultsFilter` no filter of the panel looks at a results list, whatever its preferences say.
  StructureTreeState(GuiTree& tree, bool allowsResultsFilter);
  /// Waits for a status that is being asked for; filters that are still at work are answered `TFStatusNone` from now
  /// on. The panel's filters stay allocated for the rest of the process unless `Reset` came first: hosts may refer to
  /// them still.
  ~StructureTreeState() override;

  /// False: the root holds what is shown, and is no match of its own. A filter spares it, and so every child of the
  /// root stays in the panel. A host whose root is an assembly like any other overrides this.
  [[nodiscard]] bool GetDisplayRoot() override;
  /// A `StructureFilteredTree`; that of a derived state should be derived from it.
  [[nodiscard]] FilteredTree* CreateFilteredTree() override;
  /// Whether the current filter asks for the list and filters at all. False for a filter of another class than
  /// `zelremote::StructureFilterInfo`, which a derived state may have.
  [[nodiscard]] bool IsDoingFilterAsList() override;
  /// `GetUnloadedTypeIconStatic`, and 0 for what is no `zelk::Instance`.
  [[nodiscard]] int GetUnloadedTypeIcon(const zelk::BaseInstance* instance,
                                        const du::SmartPtr<zelk::Scene>& scene) override;
  /// Lets go of the filters as well: the next look at one makes it anew from the preferences. One that an operation of
  /// state or panel may refer to lives until the outermost of these has returned.
  void Reset() override;
  /// Populates anew under a filter on visibility that follows changes.
  void OnEndUpdate() override;
  /// A new info at each call, with the shape scene that is shown and the results list; both may be null.
  [[nodiscard]] du::SmartPtr<du::RefCounted> GetAdditionalFilterInfo() const override;
  /// The filter of the view's type, which the host names; made from the preferences when it is asked for first. The
  /// reference stays good until `Reset`. While there is no filter at all, the host is told first that one is needed; if
  /// it asks for a filter from inside that call, it gets one.
  [[nodiscard]] structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& view) override;
  /// Bodies while they are not shown; 3D symbols that are no bodies always.
  [[nodiscard]] bool IsInstHidden(zelk::BaseInstance* instance) const override;
  [[nodiscard]] bool HasNoneHiddenChildren(const du::SmartPtr<zelk::BaseInstance>& instance) const override;
  /// False for a scene of drawings. `scene` must not be null.
  [[nodiscard]] bool IsCompatibleShapeSceneType(const du::SmartPtr<zelk::Scene>& scene) override;

  /// What the icon tells of issues. Any thread, as long as the kernel tree is not written meanwhile.
  [[nodiscard]] TFStatus TreeFilterGetItemStatus(const du::ConstSmartPtr<zelk::Instance>& instance,
                                                 const du::SmartPtr<zelk::Scene>& scene) override;

  /// The filter of the current view, for changes that the next population shows. Null once the panel has ended, and for
  /// a filter of another class, which a derived state may have.
  [[nodiscard]] zelremote::StructureFilterInfo* GetStructureFilter();

  /// Writes the list presentation of the filtered tree: the row of `node`, and under it one for each created item, in
  /// the order of the filter's sort column, or of their keys without one. False, and nothing done, while the panel does
  /// not filter as list. Nothing is written for null or without a result. A host may edit the tree, or populate, from
  /// inside its calls: what has gone by then gets no row, and a population leaves no more rows to make. Costs a sort
  /// that reads two properties at each comparison.
  [[nodiscard]] bool ApplyFilterAsList(FilteredTree::Node* node,
                                       const du::SmartPtr<TreeSelectionController>& controller);
  /// The icon by which an instance is told apart from others, loaded or not; an even `TypeIcon`. A pure function of its
  /// arguments, either of which may be null, and of the switch for collapsing instances. Takes no lock, allocates
  /// nothing, and keeps nothing: `TypeIconMap` does. Threads as `TreeFilterGetItemStatus`.
  [[nodiscard]] static int GetUnloadedTypeIconStatic(const du::ConstSmartPtr<zelk::Instance>& instance,
                                                     const du::SmartPtr<zelk::Scene>& scene);
  [[nodiscard]] bool InstHasIssue(const du::ConstSmartPtr<zelk::Instance>& instance,
                                  const du::SmartPtr<zelk::Scene>& scene);
  /// Whether the last result created the instance or one of equal keys; false without a result.
  [[nodiscard]] bool IsFilteredTreeContainItem(const du::SmartPtr<zelk::BaseInstance>& instance) const;
  /// Whether a filter is on and nothing passed it; false without a result.
  [[nodiscard]] bool IsMatchedFilterEmpty();
  /// The list of instances for filters that look at one; may be null. Populates anew if the current filter follows it.
  void SetResultsComps(du::SmartPtr<structure_utils::TreeResultsList> results);
  /// To be called on each panel after `WorldTreeState::SetIsShowingBodies`: brings the filters that exist in line, and
  /// populates anew in any case.
  void ShowBodiesChanged();
  /// The same after `SetIsCollapsingInstances`; the argument is not looked at. Does nothing unless that changes one of
  /// the filters that exist. The icons of all equal siblings are worked out anew, which costs a walk of the tree.
  void UpdateFiltersForCollapsingInstances(bool isCollapsing);

protected:
  /// Replaces the walk: a list, and a filter that nothing has passed, show the root's row at the most before their own.
  /// The depth of the tree costs 96 bytes of stack a level with GCC on x86-64, both frames together, which is some
  /// 80,000 levels on a stack of 8 MB, and 144 bytes under AddressSanitizer.
  void _VisitFilteredTreeNode(FilteredTree::Node* node,
                              const du::SmartPtr<TreeSelectionController>& selController) override;
  /// What the destructor does about statuses. The destructor of every derived class calls it first: a filter at work
  /// may be in a virtual call to the object.
  void _DetachStatusLookups() const;

private:
  class FilterInfo;
  class FilterInfos;

  using Filters = du::HashMap<du::Symbol, zelremote::StructureFilterInfo*>;

  [[nodiscard]] du::SmartPtr<FilteredTree> _GetResult() const;
  void _TellOfFirstFilter(const du::SmartPtr<zelk::View>& view);
  void _WriteList(FilteredTree& tree, const FilteredTree::Node& node,
                  const du::SmartPtr<TreeSelectionController>& controller);
  /// False for what a host has removed, or overtaken by another population, since the result began to be shown.
  [[nodiscard]] bool _IsRowDue(const zelk::BaseInstance* instance) const;
  void _MarkSiblings();

  /// Owned.
  Filters filters{100};
  du::SmartPtr<structure_utils::TreeResultsList> resultsComps;
  const bool allowResultsFilter;
  bool m_isTellingOfFilter = false;
  /// Those that this state has made and that live still.
  const std::shared_ptr<FilterInfos> m_filterInfos;
};

}  // namespace guitree
