#include <algorithm>
#include <utility>

#include "FilterProgress.h"
#include "RowTable.h"
#include "guitree/TreeSelectionController.h"
#include "guitree/TreeStateBase.h"
#include "guitree/WorldTreeState.h"
#include "qthost/GuiTreeItemModel.h"
#include "zelk/Instance.h"
#include "zelk/ShapeInstance.h"

namespace qthost {

namespace {

using Objects = std::vector<du::SmartPtr<zelk::Object>>;

/// What is picked in a scene comes as its presence there; the rows are those of the instances.
du::SmartPtr<zelk::Object> TakeToTree(const du::SmartPtr<zelk::Object>& object)
{
  const auto presence = du::DynamicCast<zelk::ShapeInstance>(object);
  if (!presence) {
    return object;
  }
  du::SmartPtr<zelk::Instance> instance;
  presence->GetInstance(instance);
  return instance;
}

/// The instances that rows stand for.
std::set<zelk::BaseInstance*> FindInstances(guitree::TreeStateBase* state, const Objects& items)
{
  Objects objects;
  objects.reserve(items.size());
  std::transform(items.begin(), items.end(), std::back_inserter(objects), TakeToTree);
  std::set<zelk::BaseInstance*> found;
  if (state) {
    state->GetBaseInstFromSelItems(objects, found);
    return found;
  }
  for (const auto& object : objects) {
    if (auto* const instance = dynamic_cast<zelk::BaseInstance*>(object.Get())) {
      found.insert(instance);
    }
  }
  return found;
}

}  // namespace

void GuiTreeItemModel::SelectItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  m_isSelectionNews = true;
  _Mark(items, true);
}

void GuiTreeItemModel::DeselectItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  _Mark(items, false);
}

void GuiTreeItemModel::ClearSelection()
{
  _Deselect();
  _Settle();
}

void GuiTreeItemModel::RefreshSelection()
{
  m_isSelectionStale = true;
  _Settle();
}

void GuiTreeItemModel::MadeVisible(bool visible)
{
  if (visible) {
    m_isSelectionNews = true;
    RefreshSelection();
  }
}

// Where one row stands for several instances, one that is deselected says nothing of the others.
void GuiTreeItemModel::_Mark(const Objects& items, bool isSelected)
{
  guitree::GuiTree* const panel = GetPanel();
  guitree::TreeStateBase* const state = panel ? panel->GetTreeState() : nullptr;
  if (state && guitree::WorldTreeState::IsCollapsingInstances()) {
    m_isSelectionStale = true;
  } else {
    for (const zelk::BaseInstance* instance : FindInstances(state, items)) {
      if (const RowId row = m_rows->Find(instance); row != RowTable::s_none) {
        _SetSelected(row, isSelected);
      }
    }
  }
  _Settle();
}

void GuiTreeItemModel::_SetSelected(RowId row, bool isSelected)
{
  if (m_rows->Has(row, RowTable::IsSelected) == isSelected) {
    return;
  }
  m_rows->Set(row, RowTable::IsSelected, isSelected);
  m_selectionChanged.push_back(row);
  if (!isSelected) {
    return;
  }
  m_selected.push_back(row);
  if (m_selected.size() > 2 * m_rows->GetCount()) {
    std::erase_if(m_selected, [this](RowId id) { return !m_rows->IsRow(id); });
    std::sort(m_selected.begin(), m_selected.end());
    m_selected.erase(std::unique(m_selected.begin(), m_selected.end()), m_selected.end());
  }
}

void GuiTreeItemModel::_Deselect()
{
  for (const RowId row : std::exchange(m_selected, {})) {
    if (m_rows->IsRow(row)) {
      _SetSelected(row, false);
    }
  }
}

// A row that comes asks for itself, as `TreeSelectionController::ContainsItem` would answer; later the panel knows
// which rows stand for what is selected.
void GuiTreeItemModel::_ReadSelection()
{
  const bool asksPanel = std::exchange(m_isSelectionStale, false);
  guitree::GuiTree* const panel = GetPanel();
  guitree::TreeStateBase* const state = panel ? panel->GetTreeState() : nullptr;
  const auto ofRows = std::exchange(m_controller, nullptr);
  const auto controller = state ? state->GetSelController(false) : ofRows;
  _Deselect();
  std::set<du::SmartPtr<zelk::BaseInstance>> selected;
  if (controller) {
    controller->GetSelectedInstances(selected);
  }
  const auto select = [this](const zelk::BaseInstance* instance) {
    if (const RowId row = m_rows->Find(instance); row != RowTable::s_none) {
      _SetSelected(row, true);
    }
  };
  if (!asksPanel) {
    std::for_each(selected.begin(), selected.end(), [&](const Instance& instance) { select(instance.Get()); });
    return;
  }
  const std::set<zelk::BaseInstance*> standing = FindInstances(state, {selected.begin(), selected.end()});
  std::for_each(standing.begin(), standing.end(), select);
}

// A row that was changed twice is as views know it, and so is one that has the number of a row that went.
void GuiTreeItemModel::_TellSelection()
{
  const bool isReset = std::exchange(m_isSelectionReset, false);
  const bool isNews = std::exchange(m_isSelectionNews, false) && !isReset;
  std::vector<RowId> selected;
  std::vector<RowId> deselected;
  for (const RowId row : std::exchange(m_selectionChanged, {})) {
    const bool isSelected = m_rows->Has(row, RowTable::IsSelected);
    if (m_rows->IsRow(row) && isSelected != m_rows->Has(row, RowTable::IsToldSelected)) {
      m_rows->Set(row, RowTable::IsToldSelected, isSelected);
      (isSelected ? selected : deselected).push_back(row);
    }
  }
  if (!selected.empty() || !deselected.empty()) {
    Q_EMIT SelectionTold(_MakeSelection(selected), _MakeSelection(deselected), isNews);
  }
}

// Views forget with a reset what they have been told.
void GuiTreeItemModel::_ResetSelection()
{
  for (const std::vector<RowId>* const rows : {&m_selected, &m_selectionChanged}) {
    for (const RowId row : *rows) {
      m_rows->Set(row, RowTable::IsToldSelected, false);
    }
  }
  _Deselect();
  m_selectionChanged.clear();
}

QItemSelection GuiTreeItemModel::GetToldSelection() const
{
  std::vector<RowId> rows;
  if (!m_isResetting) {
    std::copy_if(m_selected.begin(), m_selected.end(), std::back_inserter(rows),
                 [this](RowId row) { return m_rows->IsRow(row) && m_rows->Has(row, RowTable::IsSelected); });
  }
  return _MakeSelection(rows);
}

QItemSelection GuiTreeItemModel::MakeSelection(const std::vector<const zelk::BaseInstance*>& instances) const
{
  std::vector<RowId> rows;
  for (const zelk::BaseInstance* instance : instances) {
    const RowId row = m_isResetting ? RowTable::s_none : m_rows->Find(instance);
    if (row != RowTable::s_none) {
      rows.push_back(row);
    }
  }
  return _MakeSelection(rows);
}

QItemSelection GuiTreeItemModel::_MakeSelection(const std::vector<RowId>& rows) const
{
  const std::vector<Range> ranges = _FindRanges(rows);
  QItemSelection selection;
  selection.reserve(static_cast<qsizetype>(ranges.size()));
  for (const Range& range : ranges) {
    const QModelIndex above = _MakeIndex(range.parent);
    selection.append(QItemSelectionRange(index(range.first, 0, above), index(range.last, columnCount() - 1, above)));
  }
  return selection;
}

}  // namespace qthost
