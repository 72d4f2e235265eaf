#pragma once

#include <unordered_map>

#include <QIcon>
#include <QPalette>
#include <QStyledItemDelegate>

namespace qthost {

/// Shows the visible state of a row as an eye, which a click anywhere in the cell opens or closes. A mixed one is
/// opened. Owner's thread.
class VisibilityDelegate : public QStyledItemDelegate {
  Q_OBJECT

public:
  explicit VisibilityDelegate(QObject* parent);

  /// Without them no state is shown.
  void SetIcons(const QPalette& palette);
  /// Whether a click would show the row, and not hide it.
  [[nodiscard]] static bool IsToBeShown(const QModelIndex& index);

  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
  /// By `guitree::VisibleState`.
  std::unordered_map<int, QIcon> m_icons;
};

}  // namespace qthost
