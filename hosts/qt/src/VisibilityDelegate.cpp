#include "VisibilityDelegate.h"

#include <QAbstractItemModel>
#include <QMouseEvent>

#include "SvgIcon.h"
#include "guitree/VisibleState.h"
#include "qthost/GuiTreeItemModel.h"

namespace qthost {

VisibilityDelegate::VisibilityDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

void VisibilityDelegate::SetIcons(const QPalette& palette)
{
  const QIcon visible = MakeSvgIcon(QStringLiteral("eye-visible"), palette);
  const QIcon mixed = MakeSvgIcon(QStringLiteral("eye-mixed"), palette);
  m_icons = {
      {guitree::VisibleStateVisible, visible},
      {guitree::VisibleStateHidden, MakeSvgIcon(QStringLiteral("eye-hidden"), palette)},
      {guitree::VisibleStateVisibleMixed, mixed},
      {guitree::VisibleStateHiddenMixed, mixed},
      {guitree::VisibleStateVisibleAllChildren, visible},
      // An assembly shows nothing by itself: what is below it is what is seen.
      {guitree::VisibleStateHiddenAllChildren, visible},
      {guitree::VisibleStateThumbnailVisible, MakeSvgIcon(QStringLiteral("eye-thumbnail-visible"), palette)},
      {guitree::VisibleStateThumbnailHidden, MakeSvgIcon(QStringLiteral("eye-thumbnail-hidden"), palette)},
  };
}

bool VisibilityDelegate::IsToBeShown(const QModelIndex& index)
{
  return index.data(Qt::CheckStateRole).toInt() != Qt::Checked;
}

void VisibilityDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
  QStyledItemDelegate::initStyleOption(option, index);
  option->features &= ~QStyleOptionViewItem::ViewItemFeatures(QStyleOptionViewItem::HasCheckIndicator);
  const auto icon = m_icons.find(index.data(GuiTreeItemModel::VisibleStateRole).toInt());
  if (icon == m_icons.end()) {
    return;
  }
  option->features |= QStyleOptionViewItem::HasDecoration;
  option->icon = icon->second;
  option->decorationAlignment = Qt::AlignCenter;
  option->decorationSize = QSize(option->rect.width() - 2, option->decorationSize.height());
}

bool VisibilityDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& /*option*/,
                                     const QModelIndex& index)
{
  if (event->type() != QEvent::MouseButtonRelease || !(index.flags() & Qt::ItemIsUserCheckable)) {
    return false;
  }
  const auto* const mouse = dynamic_cast<const QMouseEvent*>(event);
  if (!mouse || mouse->button() != Qt::LeftButton) {
    return false;
  }
  // What has no shape is never seen, and all above it stays mixed also when nothing is left to be shown.
  const bool isShown = IsToBeShown(index) && model->setData(index, Qt::Checked, Qt::CheckStateRole);
  return isShown || model->setData(index, Qt::Unchecked, Qt::CheckStateRole);
}

}  // namespace qthost
