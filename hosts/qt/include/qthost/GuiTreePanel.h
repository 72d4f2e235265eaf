#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QIcon>
#include <QPalette>
#include <QWidget>

#include "du/Symbol.h"
#include "qthost/FilterSettings.h"
#include "qthost/GuiTreeItemModel.h"
#include "zelk/BaseInstance.h"

class QAction;
class QMenu;
class QTreeView;

namespace guitree {
class StructureTreeState;
}  // namespace guitree

namespace qthost {

class FilterBar;
class EmptyMessage;
class FilterStatus;
class RowCommands;
class StructureView;
class TreeViewKeeper;
class VisibilityDelegate;

/// A structure panel as a widget: a filter line with its options, the rows in a tree view, and a line that tells how
/// many there are and how far a filter is. It stands on a model, and so serves every kernel; what a kernel has no
/// operation for comes as a hook. Thread of the model, which must be that of the application's widgets.
///
///     qthost::GuiTreeItemModel model;
///     qthost::GuiTreePanel panel(model);
///     panel.SetVisibilityHook(showAndHide);
///     model.SetPanel(gui.Get());
///     gui->SetGuiInterface(&model);
///     gui->SetTreeState(du::MakeSmart<guitree::StructureTreeState>(*gui, true));
///     gui->Initialise(world);
///     panel.show();
///
/// - The model is not owned and must live longer. The `GuiTree` may come, go and be another one at any time; the panel
///   asks the model for it, and keeps the filter of its `guitree::StructureTreeState` what the user has chosen. Under a
///   state of another class rows are shown as they come, and the filter does nothing.
/// - While the widget is hidden the model is out of sight, from its construction on: the library defers its work, and
///   showing the widget catches up.
/// - Sorting is the library's. Rows that are sorted, or a list, without anything to look for are the result of a filter
///   that everything passes.
/// - A newer filter overtakes the one at work. A click on cancel ends it with what it has found.
/// - Edits of the tree while a filter is at work have it run again.
/// - Keyboard: Ctrl+F goes to the filter line, Enter there filters at once, Escape clears it, Down leads to the rows;
///   there Space shows and hides what is selected, Ctrl+C copies names. Everything else is in the menus, which Tab and
///   the menu key reach.
/// - The panel gives the model its icon provider, which draws in the colours of the panel's palette (`TypeIconSet`).
class GuiTreePanel : public QWidget {
  Q_OBJECT

public:
  using Instances = std::vector<GuiTreeItemModel::Instance>;
  /// Shows or hides these instances, each with all that is below it; answers whether anything has changed.
  /// What has no shape stays hidden: eyes and the Space key hide a row that is not wholly visible when showing it has
  /// changed nothing.
  using VisibilityHook = std::function<bool(const Instances& instances, bool isVisible)>;
  /// Names the product of an instance; empty for none.
  using ProductReader = std::function<du::Symbol(const zelk::BaseInstance& instance)>;
  /// Makes the picture of a type icon, in the colours of a palette; null for the panel's own.
  using PictureMaker = std::function<QIcon(int typeIcon, const QPalette& palette)>;

  /// What the panel offers as an action, in the order of its menu.
  enum class Command : unsigned char {
    Show,
    Hide,
    ShowOnly,
    ToggleVisibility,
    SelectProduct,
    ExpandBranch,
    CollapseBranch,
    CopyName,
    FocusFilter,
    ShowBodies,
    CollapseInstances,
  };

  explicit GuiTreePanel(GuiTreeItemModel& model, QWidget* parent = nullptr);
  GuiTreePanel(const GuiTreePanel&) = delete;
  GuiTreePanel& operator=(const GuiTreePanel&) = delete;
  ~GuiTreePanel() override;

  [[nodiscard]] GuiTreeItemModel& GetModel() const noexcept { return m_model; }
  /// The view of the rows. Its model and selection model must stay.
  [[nodiscard]] QTreeView& GetView() const noexcept;

  /// Without a hook, as at the start, nothing can be shown and hidden. It becomes the model's setter as well. To show
  /// nothing but some rows, the topmost instance is hidden first.
  void SetVisibilityHook(VisibilityHook hook);
  /// What "select all of this product" goes by, asked for every instance of the tree. Null, as at the start: the
  /// property "Product Name", or the name of the object where there is none.
  void SetProductReader(ProductReader reader);

  /// For type icons that the application has added, or draws otherwise; null, as at the start, for none. Asked whenever
  /// a row is painted.
  void SetPictureMaker(PictureMaker maker);

  /// What the user has chosen, apart from text that is still being typed.
  [[nodiscard]] const FilterSettings& GetFilter() const noexcept { return m_filter; }
  /// Shows these settings in the controls, and filters at once where they are others.
  void SetFilter(const FilterSettings& settings);
  /// How long typing pauses before the panel filters: 200 ms unless set.
  void SetTypingPause(int milliseconds);
  /// Fills the rows anew by the filter as it is, as after changes that it does not follow.
  void FilterAgain();
  /// Ends a filter at work, as the cancel button does.
  void CancelFilter();
  /// Ends a filter at work and starts it again from the event loop: to be called before an edit of a tree that the
  /// filter reads, which would wait for its end. Nothing without one.
  void GiveWayToEdit();

  /// An action of the panel, for the application's own menus and tool bars; it stays the panel's. `ShowBodies` and
  /// `CollapseInstances` can be checked, are not in the panel's menu, and stand for switches of the process: they
  /// change every panel.
  [[nodiscard]] QAction& GetAction(Command command) const;

  /// Writes filter and column widths into the current group.
  void SaveSettings(QSettings& settings) const;
  /// What is not stored there, or is damaged, becomes the default.
  void RestoreSettings(const QSettings& settings);

Q_SIGNALS:
  void FilterChanged();
  /// The menu of the rows is about to be shown, with the panel's commands in it. It ends when it is closed.
  void MenuAboutToShow(QMenu& menu);

protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

private:
  void _BuildLayout();
  void _AddOwnActions();
  QAction* _AddSwitch(const QString& text, const QString& toolTip);
  void _ConnectControls();
  void _ConnectModel();
  void _RefreshIcons();
  void _RefreshTypeIcons();
  void _RefreshColumns();
  void _TakeFilter();
  void _ConfirmFilter();
  [[nodiscard]] bool _IsFiltered() const;
  void _ApplyFilter() const;
  void _FilterAfterEdits();
  void _OnCalculating(bool isCalculating);
  void _ShowResult();
  [[nodiscard]] QString _DescribeRows() const;
  void _SortBy(int column, Qt::SortOrder order);
  void _ShowSort();
  void _GoToRows();
  void _ShowMenu(const QPoint& place);
  void _OnBodiesSwitched();
  void _OnCollapseSwitched();
  void _ShowSwitches();
  /// Null where the state is of another class.
  [[nodiscard]] guitree::StructureTreeState* _GetState() const;

  GuiTreeItemModel& m_model;
  FilterBar* m_bar;
  StructureView* m_view;
  FilterStatus* m_status;
  EmptyMessage* m_message;
  VisibilityDelegate* m_eyes;
  RowCommands* m_commands;
  TreeViewKeeper* m_keeper;
  QAction* m_focusFilter = nullptr;
  QAction* m_showBodies = nullptr;
  QAction* m_collapse = nullptr;
  PictureMaker m_pictureMaker;
  FilterSettings m_filter;
  bool m_isGivingWay = false;
};

}  // namespace qthost
