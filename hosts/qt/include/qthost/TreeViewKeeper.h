#pragma once

#include <unordered_map>
#include <vector>

#include <QObject>
#include <QPointer>
#include <QTreeView>

#include "qthost/GuiTreeItemModel.h"

namespace qthost {

/// Gives a tree view back what a population takes from it, by instance: which rows are expanded, the current row, and
/// where the view had scrolled to. While rows come and go one by one it keeps the first row that is seen where it is.
/// Also has the view paint itself when the looks of all rows have changed. Make one for each view that shows the model
/// itself; it ends with the view.
///
/// It hears of what is expanded by the signals of the view. What was expanded is remembered also for instances that
/// have no row for a while, as while a filter leaves them out, and forgotten once they have left their tree. Owner's
/// thread.
class TreeViewKeeper : public QObject {
  Q_OBJECT

public:
  /// The view shows the model already, or will; both must live longer, or be the parent of this.
  TreeViewKeeper(QTreeView& view, GuiTreeItemModel& model);
  TreeViewKeeper(const TreeViewKeeper&) = delete;
  TreeViewKeeper& operator=(const TreeViewKeeper&) = delete;
  ~TreeViewKeeper() override;

  /// Whether the rows of a population are all expanded in place of those that were: what suits the result of a filter.
  /// Those that leave something out stay closed: the user fetches it by opening them. What was expanded before comes
  /// back with the next population without it.
  void SetExpandsAll(bool isOn) noexcept { m_expandsAll = isOn; }
  /// Forgets what was expanded, as for another file.
  void Forget();

private:
  /// The first row that is seen, and how far it is cut.
  struct Place {
    GuiTreeItemModel::Instance instance;
    int top = 0;
  };

  void _Note(const QModelIndex& index, bool isExpanded);
  void _NoteRemoval(const QModelIndex& parent, int first, int last);
  void _ForgetWhatHasGone();
  void _Store();
  void _StorePlace();
  void _Restore();
  void _ExpandAll();
  void _RestoreExpanded();
  void _Expand(const QModelIndex& index);
  void _RestorePlace();
  [[nodiscard]] bool _IsShowing() const { return m_view.model() == &m_model; }

  QTreeView& m_view;
  GuiTreeItemModel& m_model;
  /// Instances are held, so that no other one gets the address.
  std::unordered_map<const zelk::BaseInstance*, GuiTreeItemModel::Instance> m_expanded;
  /// Those of them whose rows have gone since the batch began.
  std::vector<GuiTreeItemModel::Instance> m_removed;
  Place m_place;
  GuiTreeItemModel::Instance m_current;
  int m_currentColumn = 0;
  bool m_expandsAll = false;
  /// Whether the rows that stand now were all expanded by this.
  bool m_areAllExpanded = false;
  bool m_isRestoring = false;
  /// From the first edit of a batch to its end: the place is that from before.
  bool m_isEditing = false;
};

}  // namespace qthost
