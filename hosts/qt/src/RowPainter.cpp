#include "RowPainter.h"

#include <QAbstractItemDelegate>
#include <QHeaderView>
#include <QStyle>

#include "qthost/GuiTreeItemModel.h"

namespace qthost {

namespace {

bool HasNextSibling(const QModelIndex& index)
{
  return index.row() + 1 < index.model()->rowCount(index.parent());
}

QStyleOptionViewItem::ViewItemPosition GetPosition(const QHeaderView& header, int column)
{
  const int place = header.visualIndex(column);
  const int last = header.count() - 1;
  if (last == 0) {
    return QStyleOptionViewItem::OnlyOne;
  }
  return place == 0      ? QStyleOptionViewItem::Beginning
         : place == last ? QStyleOptionViewItem::End
                         : QStyleOptionViewItem::Middle;
}

}  // namespace

RowPainter::RowPainter(const QTreeView& view, const QStyleOptionViewItem& option, const QModelIndex& index)
    : m_view(view), m_index(index), m_option(option)
{
  m_option.showDecorationSelected = true;
  m_option.state.setFlag(QStyle::State_Selected, index.data(GuiTreeItemModel::SelectedRole).toBool());
}

void RowPainter::Paint(QPainter& painter) const
{
  const QHeaderView& header = *m_view.header();
  for (int place = 0; place < header.count(); ++place) {
    const int column = header.logicalIndex(place);
    if (!header.isSectionHidden(column)) {
      _PaintCell(painter, column);
    }
  }
  _PaintFocus(painter);
}

void RowPainter::_PaintCell(QPainter& painter, int column) const
{
  const QModelIndex cell = m_index.siblingAtColumn(column);
  QStyleOptionViewItem option = m_option;
  option.rect = m_view.visualRect(cell);
  option.viewItemPosition = GetPosition(*m_view.header(), column);
  if (column == m_view.treePosition() || (m_view.treePosition() < 0 && column == 0)) {
    _PaintBranches(painter, option.rect);
  } else {
    m_view.style()->drawPrimitive(QStyle::PE_PanelItemViewRow, &option, &painter, &m_view);
  }
  m_view.itemDelegateForIndex(cell)->paint(&painter, option, cell);
}

void RowPainter::_PaintBranches(QPainter& painter, const QRect& cell) const
{
  const bool isReverse = m_view.layoutDirection() == Qt::RightToLeft;
  const int start = m_view.columnViewportPosition(m_index.column());
  const int end = start + m_view.columnWidth(m_index.column());
  const QRect row(QPoint(start, cell.top()), QPoint(end - 1, cell.bottom()));
  QStyleOptionViewItem option = m_option;
  option.rect = isReverse ? QRect(QPoint(cell.right() + 1, cell.top()), row.bottomRight())
                          : QRect(row.topLeft(), QPoint(cell.left() - 1, cell.bottom()));
  m_view.style()->drawPrimitive(QStyle::PE_PanelItemViewRow, &option, &painter, &m_view);

  const int width = m_view.indentation();
  option.rect = QRect(isReverse ? cell.right() + 1 : cell.left() - width, cell.top(), width, cell.height());
  option.state |= QStyle::State_Item;
  m_view.style()->drawPrimitive(QStyle::PE_IndicatorBranch, &option, &painter, &m_view);
  option.state &= ~QStyle::State(QStyle::State_Item | QStyle::State_Children | QStyle::State_Open);
  for (QModelIndex above = m_index.parent(); above.isValid(); above = above.parent()) {
    option.rect.translate(isReverse ? width : -width, 0);
    option.state.setFlag(QStyle::State_Sibling, HasNextSibling(above));
    m_view.style()->drawPrimitive(QStyle::PE_IndicatorBranch, &option, &painter, &m_view);
  }
}

void RowPainter::_PaintFocus(QPainter& painter) const
{
  if (!m_view.hasFocus() || m_view.currentIndex().siblingAtColumn(m_index.column()) != m_index) {
    return;
  }
  QStyleOptionFocusRect option;
  option.QStyleOption::operator=(m_option);
  option.state |= QStyle::State_KeyboardFocusChange;
  option.backgroundColor =
      m_option.palette.color(m_option.state.testFlag(QStyle::State_Selected) ? QPalette::Highlight : QPalette::Window);
  const QHeaderView& header = *m_view.header();
  const QRect row(-header.offset(), m_option.rect.y(), header.length(), m_option.rect.height());
  option.rect = QStyle::visualRect(m_view.layoutDirection(), m_view.viewport()->rect(), row);
  m_view.style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter);
}

}  // namespace qthost
