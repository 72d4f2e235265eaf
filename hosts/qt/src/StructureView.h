#pragma once

#include <functional>
#include <vector>

#include <QTreeView>

#include "qthost/GuiTreeItemModel.h"

namespace qthost {

/// The rows of a structure panel: rows of one height, several of which can be selected, and a header that tells what
/// they are sorted by. A click on an eye does not select. Owner's thread.
class StructureView : public QTreeView {
  Q_OBJECT

public:
  explicit StructureView(QWidget* parent);

  /// What is selected, in the order of the rows; the current row where nothing is.
  [[nodiscard]] std::vector<QModelIndex> GetChosenRows() const;
  /// Whether one of these is so, without an order that takes long for many rows.
  [[nodiscard]] bool IsAnyChosen(const std::function<bool(const QModelIndex& row)>& isSo) const;
  /// Opens or closes these rows with all that is below them, at the cost of one layout. Placeholders stay closed.
  void SetBranchesExpanded(const std::vector<QModelIndex>& rows, bool isExpanded);
  /// The widths that the user has chosen; empty while the columns share the room by themselves.
  [[nodiscard]] std::vector<int> GetWidths() const;
  /// Columns that come later take theirs then. Without widths, or with one that cannot be, the columns share the room.
  void SetWidths(const std::vector<int>& widths);
  /// Shows what the rows are sorted by, without a signal: a column, or -1 for the order of the assembly.
  void ShowSort(int column, Qt::SortOrder order);
  /// The kernel has told of its selection, and the view has it too.
  void NoteSelection();

Q_SIGNALS:
  /// The user wants the rows sorted like this.
  void SortChosen(int column, Qt::SortOrder order);
  /// At this place of the screen.
  void MenuWanted(const QPoint& place);

protected:
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void resizeEvent(QResizeEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                                     const QEvent* event = nullptr) const override;

private:
  [[nodiscard]] static bool _IsEye(const QModelIndex& index);
  void _LayColumnsOut();
  void _FitNames();
  void _UseWidths();
  void _NoteWidths();

  /// Empty while the columns share the room.
  std::vector<int> m_widths;
  bool m_isFitting = false;
  /// Whether so many ranges are selected that the view itself would paint too slowly.
  bool m_isScattered = false;
};

}  // namespace qthost
