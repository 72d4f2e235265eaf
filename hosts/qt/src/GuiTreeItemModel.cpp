#include "qthost/GuiTreeItemModel.h"

#include <algorithm>

#include "FilterProgress.h"
#include "RowTable.h"
#include "guitree/TreeSelectionController.h"
#include "guitree/TreeStateBase.h"

namespace qthost {

namespace {

// Qt keeps indexes in a hash table, by the sum of what is in them and without any mixing: rows whose numbers follow
// each other would stand in one long run there, which is searched with each index that goes. A multiple of a large odd
// number is spread, and can be taken back.
constexpr std::uint32_t s_factor = 0x9E3779B1U;

constexpr std::uint32_t Invert(std::uint32_t odd)
{
  std::uint32_t inverse = odd;
  for (int i = 0; i < 4; ++i) {
    inverse *= 2U - odd * inverse;
  }
  return inverse;
}

static_assert(s_factor * Invert(s_factor) == 1U);

}  // namespace

GuiTreeItemModel::GuiTreeItemModel(QObject* parent) : QAbstractItemModel(parent), m_rows(std::make_unique<RowTable>())
{
}

// Whoever ends may have to wait for the job otherwise.
GuiTreeItemModel::~GuiTreeItemModel()
{
  CancelFilter();
}

void GuiTreeItemModel::SetPanel(guitree::GuiTree* panel)
{
  if (panel != GetPanel()) {
    CancelFilter();
  }
  m_panel = panel ? panel->GetLiveness() : nullptr;
}

guitree::GuiTree* GuiTreeItemModel::GetPanel() const noexcept
{
  return m_panel ? *m_panel : nullptr;
}

void GuiTreeItemModel::SetPropertyColumns(const std::vector<du::DualSymbol>& columns)
{
  if (columns == m_columns) {
    return;
  }
  if (!m_columns.empty()) {
    beginRemoveColumns({}, FirstPropertyColumn, columnCount() - 1);
    m_columns.clear();
    endRemoveColumns();
  }
  if (!columns.empty()) {
    beginInsertColumns({}, FirstPropertyColumn, FirstPropertyColumn + static_cast<int>(columns.size()) - 1);
    m_columns = columns;
    endInsertColumns();
  }
}

void GuiTreeItemModel::SetIconProvider(IconProvider provider)
{
  m_iconProvider = std::move(provider);
  _NoteAllChanged();
  _Settle();
}

void GuiTreeItemModel::SetVisibilitySetter(VisibilitySetter setter)
{
  m_visibilitySetter = std::move(setter);
  _NoteAllChanged();
  _Settle();
}

void GuiTreeItemModel::SetInSight(bool isInSight)
{
  m_isInSight = isInSight;
  if (guitree::GuiTree* const panel = GetPanel(); panel && panel->GetTreeState()) {
    panel->GetTreeState()->MadeVisible(isInSight);
  }
}

QModelIndex GuiTreeItemModel::FindIndex(const zelk::BaseInstance* instance) const
{
  const RowId row = m_isResetting ? RowTable::s_none : m_rows->Find(instance);
  return row != RowTable::s_none && !m_rows->Has(row, RowTable::IsStaged) ? _MakeIndex(row) : QModelIndex();
}

GuiTreeItemModel::Instance GuiTreeItemModel::GetInstance(const QModelIndex& index) const
{
  const RowId row = _GetRow(index);
  return m_rows->IsRow(row) ? m_rows->GetInstance(row) : nullptr;
}

std::size_t GuiTreeItemModel::GetRowCount() const noexcept
{
  return m_rows->GetCount() - m_staged.size();
}

std::size_t GuiTreeItemModel::GetBytes() const
{
  return m_rows->GetBytes();
}

void GuiTreeItemModel::VisitBranches(const std::function<void(const QModelIndex& index)>& visit) const
{
  if (m_isResetting) {
    return;
  }
  std::vector<RowId> open{RowTable::s_top};
  while (!open.empty()) {
    const RowId above = open.back();
    open.pop_back();
    for (std::size_t position = m_rows->GetChildCount(above); position > 0; --position) {
      const RowId row = m_rows->GetChild(above, position - 1);
      if (m_rows->GetChildCount(row) > 0 || m_rows->Has(row, RowTable::HasPlaceholder)) {
        open.push_back(row);
      }
    }
    if (above != RowTable::s_top) {
      visit(_MakeIndex(above));
    }
  }
}

bool GuiTreeItemModel::CancelFilter()
{
  if (!m_progress || m_progress->IsFinished()) {
    return false;
  }
  m_progress->Cancel();
  return true;
}

QModelIndex GuiTreeItemModel::index(int row, int column, const QModelIndex& parent) const
{
  if (row < 0 || column < 0 || column >= columnCount() || row >= rowCount(parent)) {
    return {};
  }
  const auto position = static_cast<std::size_t>(row);
  return _CreateIndex(position, column, m_rows->GetChild(_GetRow(parent), position));
}

QModelIndex GuiTreeItemModel::parent(const QModelIndex& child) const
{
  const RowId row = _GetRow(child);
  return m_rows->IsRow(row) ? _MakeIndex(m_rows->GetParent(row)) : QModelIndex();
}

QModelIndex GuiTreeItemModel::sibling(int row, int column, const QModelIndex& index) const
{
  if (!index.isValid()) {
    return {};
  }
  if (row == index.row()) {
    return column >= 0 && column < columnCount() ? createIndex(row, column, index.internalId()) : QModelIndex();
  }
  return this->index(row, column, parent(index));
}

int GuiTreeItemModel::rowCount(const QModelIndex& parent) const
{
  if (m_isResetting || parent.column() > NameColumn) {
    return 0;
  }
  return static_cast<int>(m_rows->GetChildCount(_GetRow(parent)));
}

int GuiTreeItemModel::columnCount(const QModelIndex& /*parent*/) const
{
  return FirstPropertyColumn + static_cast<int>(m_columns.size());
}

bool GuiTreeItemModel::hasChildren(const QModelIndex& parent) const
{
  if (m_isResetting || parent.column() > NameColumn) {
    return false;
  }
  const RowId row = _GetRow(parent);
  return m_rows->GetChildCount(row) > 0 || m_rows->Has(row, RowTable::HasPlaceholder);
}

bool GuiTreeItemModel::canFetchMore(const QModelIndex& parent) const
{
  const guitree::GuiTree* const panel = GetPanel();
  return panel && panel->GetTreeState() && !panel->GetTreeState()->IsBusy() && !m_isResetting
         && parent.column() <= NameColumn && m_rows->Has(_GetRow(parent), RowTable::HasPlaceholder);
}

void GuiTreeItemModel::fetchMore(const QModelIndex& parent)
{
  if (!canFetchMore(parent)) {
    return;
  }
  const RowId row = _GetRow(parent);
  const Instance instance = m_rows->GetInstance(row);
  if (!GetPanel()->GetTreeState()->ExpandFilterNode(_GetPath(row))) {
    return;
  }
  // Where nothing was left out no row has come, which would have taken the placeholder along.
  if (const RowId opened = m_rows->Find(instance.Get()); opened != RowTable::s_none) {
    _SetPlaceholder(opened, false);
    _Settle();
  }
}

std::list<zelk::BaseInstance*> GuiTreeItemModel::_GetPath(RowId row) const
{
  std::list<zelk::BaseInstance*> path;
  for (; row != RowTable::s_top; row = m_rows->GetParent(row)) {
    path.push_front(m_rows->GetInstance(row).Get());
  }
  return path;
}

GuiTreeItemModel::RowId GuiTreeItemModel::_GetRow(const QModelIndex& index) const
{
  return index.isValid() ? static_cast<RowId>(index.internalId()) * Invert(s_factor) : RowTable::s_top;
}

QModelIndex GuiTreeItemModel::_CreateIndex(std::size_t position, int column, RowId row) const
{
  const RowId spread = row * s_factor;
  return createIndex(static_cast<int>(position), column, quintptr{spread});
}

QModelIndex GuiTreeItemModel::_MakeIndex(RowId row, int column) const
{
  if (row == RowTable::s_top) {
    return {};
  }
  return _CreateIndex(m_rows->GetPosition(row), column, row);
}

// One sort finds all neighbours, wherever they stand.
std::vector<GuiTreeItemModel::Range> GuiTreeItemModel::_FindRanges(const std::vector<RowId>& rows) const
{
  std::vector<std::uint64_t> places;
  places.reserve(rows.size());
  for (const RowId row : rows) {
    if (m_rows->IsRow(row) && !m_rows->Has(row, RowTable::IsStaged)) {
      places.push_back(std::uint64_t{m_rows->GetParent(row)} << 32U | m_rows->GetPosition(row));
    }
  }
  std::sort(places.begin(), places.end());
  std::vector<Range> ranges;
  std::uint64_t last = 0;
  for (const std::uint64_t place : places) {
    if (ranges.empty() || place > last + 1) {
      const auto position = static_cast<int>(place & 0xFFFFFFFFU);
      ranges.push_back({static_cast<RowId>(place >> 32U), position, position});
    } else {
      ranges.back().last = static_cast<int>(place & 0xFFFFFFFFU);
    }
    last = place;
  }
  return ranges;
}

}  // namespace qthost
