#include "qthost/SelectionBinding.h"

#include <set>
#include <utility>
#include <vector>

#include <QScopedValueRollback>

#include "RowPlace.h"
#include "guitree/TreeSelectionController.h"
#include "guitree/TreeStateBase.h"

namespace qthost {

namespace {

// Qt compares each range that is selected with each one that was.
constexpr qsizetype s_mostComparisons = 100'000;
// Beyond that it is cheaper to paint the whole view than to find where the ranges are.
constexpr qsizetype s_mostRegions = 100;

QModelIndex FindTopmostRow(const QItemSelection& selection)
{
  QModelIndex topmost;
  std::vector<int> place;
  for (const QItemSelectionRange& range : selection) {
    std::vector<int> next = GetPlace(range.topLeft());
    if (place.empty() || next < place) {
      place = std::move(next);
      topmost = range.topLeft();
    }
  }
  return topmost;
}

/// Keeps a view from painting what changes one by one.
class QuietView {
public:
  QuietView(QWidget& view, bool isOn) : m_view(view), m_isOn(isOn && view.updatesEnabled())
  {
    if (m_isOn) {
      m_view.setUpdatesEnabled(false);
    }
  }
  ~QuietView()
  {
    if (m_isOn) {
      m_view.setUpdatesEnabled(true);
    }
  }
  QuietView(const QuietView&) = delete;
  QuietView& operator=(const QuietView&) = delete;

private:
  QWidget& m_view;
  const bool m_isOn;
};

}  // namespace

SelectionBinding::SelectionBinding(QAbstractItemView& view, GuiTreeItemModel& model)
    : QObject(&view), m_view(view), m_model(model), m_selection(view.selectionModel())
{
  connect(&model, &GuiTreeItemModel::SelectionTold, this, &SelectionBinding::_TakeFromKernel);
  connect(m_selection, &QItemSelectionModel::selectionChanged, this, &SelectionBinding::_GiveToKernel);
  Refresh();
}

SelectionBinding::~SelectionBinding() = default;

void SelectionBinding::Refresh()
{
  const QScopedValueRollback taking(m_isTaking, true);
  if (m_selection) {
    _ReplaceInView(m_selection->selection().size());
  }
}

void SelectionBinding::_TakeFromKernel(const QItemSelection& selected, const QItemSelection& deselected, bool isNews)
{
  if (m_isGiving) {
    return;
  }
  const QScopedValueRollback taking(m_isTaking, true);
  _SelectInView(selected, deselected);
  if (!selected.isEmpty() && isNews && m_scrolls) {
    _ScrollTo(FindTopmostRow(selected));
  }
}

void SelectionBinding::_SelectInView(const QItemSelection& selected, const QItemSelection& deselected)
{
  if (!m_selection) {
    return;
  }
  const qsizetype present = m_selection->selection().size();
  if (deselected.isEmpty() && present * selected.size() <= s_mostComparisons) {
    const QuietView quiet(m_view, selected.size() > s_mostRegions);
    m_selection->select(selected, QItemSelectionModel::Select);
    return;
  }
  _ReplaceInView(present);
}

// One change for the view as a rule. Two where the comparison of all ranges with all others would take longer.
void SelectionBinding::_ReplaceInView(qsizetype present)
{
  const QItemSelection all = m_model.GetToldSelection();
  const QuietView quiet(m_view, present + all.size() > s_mostRegions);
  if (present * all.size() <= s_mostComparisons) {
    m_selection->select(all, QItemSelectionModel::ClearAndSelect);
    return;
  }
  m_selection->clearSelection();
  m_selection->select(all, QItemSelectionModel::Select);
}

void SelectionBinding::_ScrollTo(const QModelIndex& first)
{
  if (m_selection) {
    m_selection->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
  }
  m_view.scrollTo(first);
}

void SelectionBinding::_GiveToKernel()
{
  const guitree::GuiTree* const panel = m_model.GetPanel();
  if (m_isTaking || m_model.IsChangingRows() || !panel || !panel->GetTreeState()) {
    return;
  }
  const auto controller = panel->GetTreeState()->GetSelController(false);
  if (!controller) {
    return;
  }
  std::set<GuiTreeItemModel::Instance> instances;
  for (const QItemSelectionRange& range : m_selection->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      instances.insert(m_model.GetInstance(m_model.index(row, GuiTreeItemModel::NameColumn, range.parent())));
    }
  }
  const QScopedValueRollback giving(m_isGiving, true);
  controller->SetItems(instances);
}

}  // namespace qthost
