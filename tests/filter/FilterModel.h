#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "guitree/InstsComperator.h"
#include "testsupport/ScriptedFilter.h"
#include "zelk/BaseInstance.h"

namespace filtertest {

/// What a filtered tree has to be, found the plain way: from a whole copy of the kernel's tree, by answering for each
/// instance whether it is rejected and whether anything below it stays. Slow, and without any state of a run.
class FilterModel {
public:
  using Instance = du::SmartPtr<zelk::BaseInstance>;

  /// A row; without an instance a placeholder.
  struct Row {
    zelk::BaseInstance* instance = nullptr;
    std::vector<Row> rows;
  };

  FilterModel(testsupport::ScriptedFilter& filter, const std::set<zelk::BaseInstance*>& spared, bool isForced)
      : m_filter(filter), m_spared(spared), m_isForced(isForced)
  {
  }

  void Build(const Instance& top);
  /// What a cancelled build leaves.
  void Cancel(const Instance& top);
  /// Unlike a real placeholder, one that is told by its parent.
  void AddPlaceholder(zelk::BaseInstance* parent) { Find(tree, parent)->rows.emplace_back(); }
  /// Fills the branch under `parent`, which ends with a placeholder; answers the topmost new instances.
  std::vector<zelk::BaseInstance*> Expand(zelk::BaseInstance* parent);

  static Row* Find(Row& top, const zelk::BaseInstance* instance);

  Row tree;
  /// Without an instance where there is none.
  Row hiddenTree;
  std::set<Instance> matched;
  std::set<Instance, guitree::InstsComperator> created;
  /// Null without one.
  const zelk::BaseInstance* first = nullptr;
  /// Of the filter; told only where every instance is checked.
  std::size_t asks = 0;

private:
  [[nodiscard]] Row _Copy(const Instance& instance) const;
  [[nodiscard]] Row _Sort(Row row) const;
  [[nodiscard]] bool _OrdersBefore(const Row& a, const Row& b) const;
  [[nodiscard]] bool _Matches(const Row& row, bool hiddenPass) const;
  [[nodiscard]] bool _IsRejected(const Row& row, bool hiddenPass) const;
  [[nodiscard]] bool _BringsSiblings(const Row& parent, bool hiddenPass) const;
  [[nodiscard]] Row _RunPass(const Row& source, bool hiddenPass);
  [[nodiscard]] Row _KeepSurvivors(const Row& source, bool hiddenPass) const;
  void _Record(const Row& source, bool hiddenPass);
  void _FindFirst(const Row& row, bool hiddenPass);
  void _Fill(Row& row, std::vector<zelk::BaseInstance*>& made);

  testsupport::ScriptedFilter& m_filter;
  const std::set<zelk::BaseInstance*>& m_spared;
  const bool m_isForced;
};

}  // namespace filtertest
