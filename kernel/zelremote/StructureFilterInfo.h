#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "du/DualSymbol.h"
#include "du/Symbol.h"
#include "structure_utils/TreeFilterAdditionalInfo.h"
#include "structure_utils/TreeFilterInfoBase.h"
#include "zelremote/HiddenBranches.h"
#include "zelremote/NameVerdicts.h"
#include "zelremote/TextPattern.h"

namespace zelremote {

/// The filter of a structure panel: what a user looks for, what is left out, and how the result is presented. Stored in
/// the preferences under its name.
///
///     zelremote::StructureFilterInfo filter("panel");
///     filter.SetText("hex nut*");
///     filter.SetPartsOnly(true);
///
/// A new filter lets everything through. Its criteria:
/// - text, in the display name and in properties: `TextPattern` tells how it is read;
/// - parts, bodies, or either where both are set. A part is no body and has no children but bodies;
/// - what is selected;
/// - what is visible, or hidden, in the scene of the additional info. What has no shape instance there is neither;
/// - what has an issue, that is, any other status than `TFStatusNone`;
/// - what is on the results list of the additional info (`useResultsList`).
/// An instance has to meet all that are on. One that asks for something the additional info does not have, or for which
/// there is no info, is met by nothing: nobody is visible in no scene, and a list that has not come yet holds nothing.
///
/// Apart from these it hides: bodies (`hideBodies`), and all but the first of siblings that show the same product
/// (`collapseInstances`), each with everything below it. What is hidden does not come along as a sibling either. The
/// first sibling stands for the others while they are hidden: it is selected, and on the results list, as soon as one
/// of them is.
///
/// What the questions to the filter answer. "Criteria" are those above, "view criteria" visibility and issues:
///
/// | Question                              | True if |
/// |---------------------------------------|---------|
/// | `IsFiltering(false)`                  | any criterion is on, or `collapseInstances` |
/// | `IsFiltering(true)`                   | that, or `hideBodies` |
/// | `IsFilteringBase(false)`              | any criterion but the view criteria is on, or `collapseInstances` |
/// | `IsFilteringBase(true)`               | that, or `hideBodies` |
/// | `IsHiddenFilter(true)`                | it hides anything, and no criterion is on |
/// | `IsHiddenFilter(false)`               | that, or it hides anything and shows siblings |
/// | `IsFilteringUsingView()`              | a view criterion is on |
/// | `IsFilteredOut`, hidden pass          | the instance is hidden |
/// | `IsFilteredOut`, other pass           | the instance is hidden, or does not meet the criteria |
/// | `GetShowSiblings()`                   | it shows siblings, and no hidden pass is under way |
/// | `GetFilteringName()`                  | there is text to look for, in the display name |
/// | `GetFilteringColumns()`               | there is text to look for, in properties |
/// | `GetFilteringParts()`, `Bodies`, `Sel`, `Vis`, `Issues` | that criterion is on |
///
/// A pass for what is hidden is asked for only where one pass cannot do: where nothing else is filtered, and where the
/// siblings of a match come along unjudged, hidden ones too.
///
/// In the hidden pass itself nothing may come along unjudged, hence the answer of `GetShowSiblings`. The pass under way
/// is that of the last `IsFilteredOut`: in each pass a run asks about the top of the tree before it asks for siblings.
///
/// A filter belongs to one thread at a time. A duplicate is for one run over a tree that does not change meanwhile: it
/// remembers which branches are hidden, from the root of the tree on. It takes no lock and allocates nothing where
/// names and values have up to 1,024 bytes; a longer one makes room for itself and for all that are no longer. What the
/// kernel does for a property value, a shape instance or a status is the kernel's.
class StructureFilterInfo : public structure_utils::TreeFilterInfoBase {
public:
  enum class Visibility { Any, Visible, Hidden };

  /// `name` tells the filters of one host apart, as a rule by view type.
  explicit StructureFilterInfo(const du::Symbol& name);

  [[nodiscard]] const du::Symbol& GetName() const noexcept { return m_name; }

  /// Reads every setting that this class has from the preferences of the running world, each under "Structure
  /// Filter/NAME/" and a key such as "list_mode". What is not stored keeps its value, and so does everything while no
  /// kernel runs. What is stored as another type, or cannot be understood, becomes its default, with a line of trace.
  void LoadFromPreferences();
  /// Stores every setting, so that a filter of this name can load it. Nothing while no kernel runs.
  void StoreToPreferences() const;

  /// Text without a word, such as blanks, looks for nothing, and so does any text where neither names nor columns are
  /// searched.
  void SetText(const std::string& text);
  [[nodiscard]] const std::string& GetText() const noexcept { return m_text; }
  /// Whether text is looked for in display names; so it is from the start.
  void SetSearchName(bool on) { m_searchName = on; }
  [[nodiscard]] bool GetSearchName() const noexcept { return m_searchName; }
  /// The properties in which text is looked for as well. An instance without such a property has no text there.
  void SetColumns(std::vector<du::DualSymbol> columns);
  [[nodiscard]] const std::vector<du::DualSymbol>& GetColumns() const noexcept { return m_columns; }
  void SetMatchCase(bool on);
  void SetMatchWholeWord(bool on);

  void SetPartsOnly(bool on) { m_partsOnly = on; }
  [[nodiscard]] bool GetPartsOnly() const noexcept { return m_partsOnly; }
  void SetBodiesOnly(bool on) { m_bodiesOnly = on; }
  [[nodiscard]] bool GetBodiesOnly() const noexcept { return m_bodiesOnly; }
  void SetSelectedOnly(bool on) { m_selectedOnly = on; }
  [[nodiscard]] bool GetSelectedOnly() const noexcept { return m_selectedOnly; }
  void SetVisibility(Visibility visibility) { m_visibility = visibility; }
  [[nodiscard]] Visibility GetVisibility() const noexcept { return m_visibility; }
  void SetIssuesOnly(bool on) { m_issuesOnly = on; }
  [[nodiscard]] bool GetIssuesOnly() const noexcept { return m_issuesOnly; }

  void SetShowSiblings(bool on) { m_showSiblings = on; }
  void SetEnsureExpanded(bool on) { m_ensureExpanded = on; }
  /// Both parts empty: the order of the kernel, as at the start.
  void SetSortColumn(const du::DualSymbol& column) { m_sortColumn = column; }
  void SetSortDirection(bool ascending) { m_isAscending = ascending; }

  /// Turns every criterion off, and leaves alone where and how text is looked for, what is hidden and how the result is
  /// presented.
  void ClearCriteria();

  [[nodiscard]] structure_utils::TreeFilterInfoBase* Duplicate() override;
  [[nodiscard]] bool IsFiltering(bool countHiddenBodies) const override;
  [[nodiscard]] bool IsHiddenFilter(bool hiddenOnly) const override;
  [[nodiscard]] bool IsFilteringBase(bool countHiddenBodies) const override;
  /// Null is filtered out. `count` goes up each time that an instance comes through the pass that is not the hidden
  /// one; an instance that is asked about again counts again.
  [[nodiscard]] bool IsFilteredOut(const du::SmartPtr<zelk::BaseInstance>& instance,
                                   std::set<du::SmartPtr<zelk::BaseInstance>>& selected, bool hiddenPass,
                                   du::SmartPtr<du::RefCounted>& additionalInfo, unsigned int* count) override;
  [[nodiscard]] bool HasDynamicUpdateOption() override;
  [[nodiscard]] bool GetDynamicUpdate() override;
  void SetDynamicUpdate(bool dynamicUpdate) override;
  [[nodiscard]] bool GetFilteringName() override;
  [[nodiscard]] bool GetFilteringParts() override;
  [[nodiscard]] bool GetFilteringBodies() override;
  [[nodiscard]] bool GetFilteringColumns() override;
  [[nodiscard]] bool GetFilteringSel() override;
  [[nodiscard]] bool GetEnsureExpanded() override;
  /// False from the first question of a hidden pass to the first of the other one, else what is set. A duplicate and
  /// a copy are in no pass, whatever their original is in.
  [[nodiscard]] bool GetShowSiblings() override;
  [[nodiscard]] bool GetFilteringVis() override;
  [[nodiscard]] bool GetFilteringIssues() override;
  /// False: parts that are not in step with their source are no criterion of this filter.
  [[nodiscard]] bool GetNotSyncPartsStatus() const override;
  [[nodiscard]] bool GetSortDirection() const override;
  [[nodiscard]] bool GetMatchCase() const override;
  [[nodiscard]] bool GetMatchWholeWord() const override;
  [[nodiscard]] du::DualSymbol GetSortColumn() override;
  [[nodiscard]] bool GetCollapseInstances() const override;
  [[nodiscard]] bool GetHideBodies() const override;

  /// 1 asks for the list presentation of a result, any other value for the tree.
  std::int32_t listMode = 0;
  bool collapseInstances = false;
  bool hideBodies = false;
  bool useResultsList = false;
  bool resultsListLive = false;

private:
  using Instances = std::set<du::SmartPtr<zelk::BaseInstance>>;

  /// That of the last question about an instance. A copy has been asked nothing yet.
  struct Pass {
    Pass() = default;
    Pass(const Pass& /*other*/) noexcept {}
    Pass& operator=(const Pass& /*other*/) noexcept
    {
      isHidden = false;
      return *this;
    }
    ~Pass() = default;

    bool isHidden = false;
  };

  /// Calls `visit` with the key and the member of each setting.
  template <typename Visitor>
  static void _ForEachSetting(const Visitor& visit);
  void _PreparePattern();

  [[nodiscard]] bool _HasTextCriterion() const
  {
    return !m_search.GetPattern().IsEmpty() && (m_searchName || !m_columns.empty());
  }
  [[nodiscard]] bool _HasViewCriterion() const { return m_visibility != Visibility::Any || m_issuesOnly; }
  [[nodiscard]] bool _HasOtherCriterion() const;
  [[nodiscard]] bool _HasCriterion() const { return _HasViewCriterion() || _HasOtherCriterion(); }
  [[nodiscard]] bool _IsHiding() const { return hideBodies || collapseInstances; }

  [[nodiscard]] bool _IsHidden(const du::SmartPtr<zelk::BaseInstance>& instance);
  /// With the steps that follow in the header, an answer is one function: a run without a match takes 0.86 times as
  /// long.
  [[nodiscard]] bool _MeetsCriteria(const du::SmartPtr<zelk::BaseInstance>& instance, const Instances& selected,
                                    const du::RefCounted* additionalInfo)
  {
    // The cheapest first.
    return _MeetsKind(*instance) && (!m_selectedOnly || _StandsForOneOf(instance, selected)) && _MeetsText(*instance)
           && ((!useResultsList && !_HasViewCriterion()) || _MeetsInfo(instance, additionalInfo));
  }
  /// Whether the instance is among these, or one that it stands for.
  [[nodiscard]] bool _StandsForOneOf(const du::SmartPtr<zelk::BaseInstance>& instance, const Instances& instances)
  {
    return instances.contains(instance)
           || (collapseInstances && !instances.empty() && _HasSiblingAmong(*instance, instances));
  }
  [[nodiscard]] bool _HasSiblingAmong(const zelk::BaseInstance& instance, const Instances& instances);
  [[nodiscard]] bool _MeetsKind(const zelk::BaseInstance& instance) const
  {
    return (!m_partsOnly && !m_bodiesOnly) || _IsOfKind(instance);
  }
  [[nodiscard]] bool _IsOfKind(const zelk::BaseInstance& instance) const;
  [[nodiscard]] bool _MeetsText(const zelk::BaseInstance& instance)
  {
    return !_HasTextCriterion() || (m_columns.empty() ? _HasAllInName(instance) : _HasAllInFields(instance));
  }
  [[nodiscard]] bool _HasAllInName(const zelk::BaseInstance& instance)
  {
    const du::Symbol name = instance.GetObjectName();
    return m_verdicts.FindOrJudge(name, [this, name] { return _HasAllIn(name); });
  }
  [[nodiscard]] bool _HasAllIn(const du::Symbol& name);
  [[nodiscard]] bool _HasAllInFields(const zelk::BaseInstance& instance);
  [[nodiscard]] bool _MeetsInfo(const du::SmartPtr<zelk::BaseInstance>& instance, const du::RefCounted* additionalInfo);
  [[nodiscard]] bool _MeetsView(const du::ConstSmartPtr<zelk::Instance>& instance,
                                const structure_utils::TreeFilterAdditionalInfo& info) const;

  du::Symbol m_name;
  std::string m_text;
  bool m_searchName = true;
  std::vector<du::DualSymbol> m_columns;
  bool m_matchCase = false;
  bool m_matchWholeWord = false;
  bool m_partsOnly = false;
  bool m_bodiesOnly = false;
  bool m_selectedOnly = false;
  Visibility m_visibility = Visibility::Any;
  bool m_issuesOnly = false;
  bool m_showSiblings = false;
  bool m_ensureExpanded = false;
  du::DualSymbol m_sortColumn;
  bool m_isAscending = true;
  bool m_dynamicUpdate = false;

  TextSearch m_search;
  NameVerdicts m_verdicts;
  /// Kept for its memory.
  std::string m_value;
  std::vector<du::SmartPtr<zelk::Instance>> m_siblings;
  HiddenBranches m_hiddenBranches;
  Pass m_pass;
};

}  // namespace zelremote
