#pragma once

#include <QAbstractItemView>
#include <QItemSelectionModel>
#include <QObject>
#include <QPointer>

#include "qthost/GuiTreeItemModel.h"

namespace qthost {

/// Keeps the selection of a view and that of the kernel the same, each change in one batch. What the kernel tells is
/// selected in the view, which scrolls to the topmost row of it; what the user selects there replaces the selection of
/// the kernel, in which the panel of the model keeps it. Neither side hears back what it has said.
///
/// Rows that go, as while a filter leaves them out, leave the selection of the view and not that of the kernel. Make
/// one for each view, once it shows the model; it ends with the view. Owner's thread.
///
/// The cost of a change is that of its rows. Qt itself asks all ranges of neighbours that are selected for each cell
/// that it paints, so that ten thousands of rows which are no neighbours make painting slow, wherever they come from.
/// The view of a `GuiTreePanel` asks the model instead.
class SelectionBinding : public QObject {
  Q_OBJECT

public:
  /// Takes over what is selected in the kernel. The model must live longer than the view.
  SelectionBinding(QAbstractItemView& view, GuiTreeItemModel& model);
  SelectionBinding(const SelectionBinding&) = delete;
  SelectionBinding& operator=(const SelectionBinding&) = delete;
  ~SelectionBinding() override;

  /// Selects in the view what the kernel has selected, and nothing else.
  void Refresh();
  /// Whether the view scrolls to what the kernel selects, and makes it its current row. True at first.
  void SetScrolls(bool isOn) noexcept { m_scrolls = isOn; }

private:
  void _TakeFromKernel(const QItemSelection& selected, const QItemSelection& deselected, bool isNews);
  void _SelectInView(const QItemSelection& selected, const QItemSelection& deselected);
  /// `present` is the number of ranges that are selected.
  void _ReplaceInView(qsizetype present);
  void _ScrollTo(const QModelIndex& first);
  void _GiveToKernel();

  QAbstractItemView& m_view;
  GuiTreeItemModel& m_model;
  const QPointer<QItemSelectionModel> m_selection;
  bool m_scrolls = true;
  bool m_isTaking = false;
  bool m_isGiving = false;
};

}  // namespace qthost
