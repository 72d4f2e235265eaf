#include "FilterModel.h"

#include <algorithm>

#include "zelk/PropertyValue.h"

namespace filtertest {
namespace {

using Instance = FilterModel::Instance;
using Row = FilterModel::Row;

Instance ParentOf(const zelk::BaseInstance* instance)
{
  Instance parent;
  instance->GetBaseParent(parent);
  return parent;
}

const Row& LastBelow(const Row& row)
{
  return row.rows.empty() ? row : LastBelow(row.rows.back());
}

}  // namespace

void FilterModel::Build(const Instance& top)
{
  tree = {};
  hiddenTree = {};
  first = nullptr;
  asks = 0;
  const Row all = _Copy(top);
  if (!m_filter.hasHiddenPass) {
    tree = _RunPass(all, false);
    return;
  }
  const Row shown = _RunPass(all, true);
  if (m_filter.isHiddenPassAll) {
    tree = shown;
    return;
  }
  hiddenTree = shown;
  tree = _RunPass(hiddenTree, false);
}

void FilterModel::Cancel(const Instance& top)
{
  tree = {.instance = top.Get(), .rows = {Row()}};
  hiddenTree = {};
  first = nullptr;
}

std::vector<zelk::BaseInstance*> FilterModel::Expand(zelk::BaseInstance* parent)
{
  std::vector<zelk::BaseInstance*> made;
  Row& row = *Find(tree, parent);
  if (row.rows.size() > 1) {
    Row& sibling = row.rows[row.rows.size() - 2];
    if (sibling.rows.empty()) {
      _Fill(sibling, made);
    }
  }
  _Fill(row, made);
  return made;
}

Row* FilterModel::Find(Row& top, const zelk::BaseInstance* instance)
{
  if (top.instance == instance) {
    return &top;
  }
  for (Row& row : top.rows) {
    if (Row* const found = Find(row, instance)) {
      return found;
    }
  }
  return nullptr;
}

Row FilterModel::_Copy(const Instance& instance) const
{
  Row row{.instance = instance.Get(), .rows = {}};
  std::vector<Instance> children;
  instance->GetBaseChildren(children);
  for (const Instance& child : children) {
    row.rows.push_back(_Copy(child));
  }
  return row;
}

Row FilterModel::_Sort(Row row) const
{
  for (Row& child : row.rows) {
    child = _Sort(child);
  }
  if (m_filter.sortColumn != du::DualSymbol()) {
    std::stable_sort(row.rows.begin(), row.rows.end(),
                     [this](const Row& a, const Row& b) { return _OrdersBefore(a, b); });
  }
  return row;
}

bool FilterModel::_OrdersBefore(const Row& a, const Row& b) const
{
  const auto textOf = [this](const Row& row) {
    du::SmartPtr<zelk::PropertyValue> value;
    row.instance->GetPropertyValue(value, m_filter.sortColumn.GetFirst(), m_filter.sortColumn.GetSecond(), {});
    std::string text;
    if (value) {
      value->GetValueAsString(text);
    }
    return text;
  };
  const std::string lesser = textOf(m_filter.sortAscending ? a : b);
  const std::string greater = textOf(m_filter.sortAscending ? b : a);
  return !lesser.empty() && (greater.empty() || lesser < greater);
}

bool FilterModel::_Matches(const Row& row, bool hiddenPass) const
{
  return !m_filter.filtersOut(Instance(row.instance), hiddenPass);
}

bool FilterModel::_IsRejected(const Row& row, bool hiddenPass) const
{
  const bool isRejected = !_Matches(row, hiddenPass);
  if (m_spared.empty()) {
    return isRejected;
  }
  if (m_spared.contains(row.instance)) {
    return false;
  }
  const Instance parent = ParentOf(row.instance);
  if (!parent) {
    return isRejected;
  }
  if (!ParentOf(parent.Get()) && m_filter.filtersOutAtRoot(Instance(row.instance))) {
    return true;
  }
  const bool isHiddenBody = m_filter.hideBodies && row.instance->IsBodyInstance();
  return isRejected && (isHiddenBody || !m_spared.contains(parent.Get()));
}

bool FilterModel::_BringsSiblings(const Row& parent, bool hiddenPass) const
{
  return m_filter.showSiblings && std::any_of(parent.rows.begin(), parent.rows.end(), [&](const Row& row) {
           return !_IsRejected(row, hiddenPass);
         });
}

Row FilterModel::_RunPass(const Row& source, bool hiddenPass)
{
  const Row sorted = _Sort(source);
  first = nullptr;
  _FindFirst(sorted, hiddenPass);
  _Record(sorted, hiddenPass);
  return _KeepSurvivors(sorted, hiddenPass);
}

Row FilterModel::_KeepSurvivors(const Row& source, bool hiddenPass) const
{
  Row kept{.instance = source.instance, .rows = {}};
  const bool bringsAll = _BringsSiblings(source, hiddenPass);
  for (const Row& row : source.rows) {
    Row branch = _KeepSurvivors(row, hiddenPass);
    if (bringsAll || !_IsRejected(row, hiddenPass) || !branch.rows.empty()) {
      kept.rows.push_back(std::move(branch));
    }
  }
  return kept;
}

void FilterModel::_Record(const Row& source, bool hiddenPass)
{
  // Once in the search among siblings, and once to keep it or not unless the siblings have settled that.
  const bool bringsAll = _BringsSiblings(source, hiddenPass);
  asks += source.rows.size() * ((m_filter.showSiblings ? 1U : 0U) + (bringsAll ? 0U : 1U));
  if (m_isForced && _Matches(source, hiddenPass)) {
    matched.emplace(source.instance);
    created.emplace(source.instance);
  }
  for (const Row& row : source.rows) {
    if (m_isForced && bringsAll) {
      created.emplace(row.instance);
    }
    _Record(row, hiddenPass);
  }
}

void FilterModel::_FindFirst(const Row& row, bool hiddenPass)
{
  if (first) {
    return;
  }
  ++asks;
  if (!_IsRejected(row, hiddenPass)) {
    first = row.instance;
  }
  for (const Row& child : row.rows) {
    _FindFirst(child, hiddenPass);
  }
}

void FilterModel::_Fill(Row& row, std::vector<zelk::BaseInstance*>& made)
{
  const Row source = hiddenTree.instance ? *Find(hiddenTree, row.instance) : _Copy(Instance(row.instance));
  if (!row.rows.empty() && !row.rows.back().instance) {
    row.rows.pop_back();
  } else if (row.rows.size() == source.rows.size()) {
    return;
  }
  const std::vector<Row> present = row.rows;
  for (const Row& child : source.rows) {
    const bool isPresent = std::any_of(present.begin(), present.end(),
                                       [&child](const Row& other) { return other.instance == child.instance; });
    if (!isPresent) {
      row.rows.push_back(child);
      made.push_back(child.instance);
      first = first ? LastBelow(child).instance : nullptr;
    }
  }
}

}  // namespace filtertest
