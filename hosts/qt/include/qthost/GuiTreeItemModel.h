#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <set>
#include <unordered_map>
#include <vector>

#include <QAbstractItemModel>
#include <QIcon>
#include <QItemSelection>
#include <QString>
#include <QVariant>

#include "du/DualSymbol.h"
#include "du/SmartPtr.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"

namespace qthost {

class FilterProgress;
class RowTable;

/// The rows of a structure panel as a Qt item model, and at the same time the host that guitree tells of them. Give it
/// to any view; it works without one as well. Owner's thread, which must be the thread of the Qt object.
///
///     qthost::GuiTreeItemModel model;
///     const auto gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
///     model.SetPanel(gui.Get());
///     gui->SetGuiInterface(&model);
///     gui->SetTreeState(du::MakeSmart<guitree::StructureTreeState>(*gui, true));
///     gui->Initialise(world);
///     view.setModel(&model);
///
/// - Column 0 is the name, column 1 the visible state, the others are properties (`SetPropertyColumns`).
/// - A population is one reset, and so is the result of a filter. All else comes as inserted, removed and moved rows,
///   and as changed data, so that views keep their place. What a reset takes from a view, `TreeViewKeeper` gives back.
/// - Names, icons, states and tooltips are read from kernel and panel when a view asks for them; a row itself is a
///   record of some 40 bytes, and holds its instance.
/// - A row whose parent instance has none stands below the nearest ancestor that has one, or at the top.
/// - A placeholder is a row that has children and can fetch them.
/// - What comes in one bracket of `StartTreeUpdate` is told to views in as few signals as possible, at the latest when
///   the bracket closes. Until then the model shows what it has told.
///
/// Slots of the model's own signals may call the `GuiTree`, its state and the kernel; those of the signals of
/// `QAbstractItemModel` must not. Hosts that need more derive from the class; who overrides a call passes it on.
class GuiTreeItemModel : public QAbstractItemModel, public guitree::GuiInterface {
  Q_OBJECT

public:
  enum Column : int { NameColumn = 0, VisibleColumn = 1, FirstPropertyColumn = 2 };

  /// What all columns of a row answer, beside the roles of Qt.
  enum Role : int {
    /// The number of the type icon (`guitree::TypeIcon`, and the odd number above it for a loaded instance) as an int;
    /// invalid while no scene is shown.
    TypeIconRole = Qt::UserRole + 1,
    /// `guitree::VisibleState` as an int; invalid while no scene is shown.
    VisibleStateRole,
    /// In a comparison: 1 on the first side, 2 on the other; otherwise 0.
    ComparedRole,
    /// Whether the instance has an issue that a filter would find, such as a shape that has failed.
    IssueRole,
    /// Whether the row carries the associated highlight. Its name is underlined (`Qt::FontRole`).
    AssociatedRole,
    /// Whether the kernel has told that the row is selected. Views have a selection of their own, see
    /// `SelectionBinding`.
    SelectedRole,
    /// Whether something is left out below the row that can be fetched.
    PlaceholderRole,
  };

  /// What there is to say about the rows of a filter as a whole.
  enum class ResultNote : unsigned char { None, NoMatch, Cancelled };

  using VisibleMap = du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>;
  using ChangeMap = du::HashMap<const zelk::BaseInstance*, int>;
  using Instance = du::SmartPtr<zelk::BaseInstance>;
  using IconProvider = std::function<QIcon(int typeIcon)>;
  /// Shows or hides an instance with all that is below it; answers whether anything has changed.
  using VisibilitySetter = std::function<bool(const Instance& instance, bool isVisible)>;

  explicit GuiTreeItemModel(QObject* parent = nullptr);
  GuiTreeItemModel(const GuiTreeItemModel&) = delete;
  GuiTreeItemModel& operator=(const GuiTreeItemModel&) = delete;
  /// After the `GuiTree`.
  ~GuiTreeItemModel() override;

  // --- What the application sets and asks ---

  /// The panel that this model is the host of; not owned, null for none, and noticed when it ends. It is asked for what
  /// no call brings: icons, visible states, the selection, what is below a placeholder. Without it there is none of
  /// these. A filter that is at work for another one is cancelled, by the end of the model as well.
  void SetPanel(guitree::GuiTree* panel);
  /// Null without a panel, and after its end.
  [[nodiscard]] guitree::GuiTree* GetPanel() const noexcept;
  /// Null before `GuiTree::Initialise`. The application reports its scenes and views to it.
  [[nodiscard]] const du::SmartPtr<SceneManagerObserver>& GetSceneManagerObserver() const noexcept
  {
    return m_observer;
  }
  /// Properties to show, each in a column of its own. Where the group is empty it is "Instance".
  void SetPropertyColumns(const std::vector<du::DualSymbol>& columns);
  [[nodiscard]] const std::vector<du::DualSymbol>& GetPropertyColumns() const noexcept { return m_columns; }
  /// Makes the decorations of the names; without one there are none. Asked with 0 where no scene is shown.
  void SetIconProvider(IconProvider provider);
  /// Makes the column of the visible state one that can be checked.
  void SetVisibilitySetter(VisibilitySetter setter);
  /// Whether the panel can be seen: while it cannot, the library defers its work. Tells the state of the panel, which
  /// catches up. In sight at first.
  void SetInSight(bool isInSight);

  /// The index in column 0; invalid for an instance without a row, and for null.
  [[nodiscard]] QModelIndex FindIndex(const zelk::BaseInstance* instance) const;
  /// Null for an invalid index.
  [[nodiscard]] Instance GetInstance(const QModelIndex& index) const;
  [[nodiscard]] std::size_t GetRowCount() const noexcept;
  /// All columns of the rows that the kernel has told as selected, in as few ranges as there are runs of neighbours.
  [[nodiscard]] QItemSelection GetToldSelection() const;
  /// All columns of the rows of these instances, in the same form. Instances without a row are passed over.
  [[nodiscard]] QItemSelection MakeSelection(const std::vector<const zelk::BaseInstance*>& instances) const;
  /// Whether rows are between two states: signals of a selection model are then no wish of the user.
  [[nodiscard]] bool IsChangingRows() const noexcept { return m_changing > 0 || m_isResetting; }
  /// Each row with children or a placeholder, parents first.
  void VisitBranches(const std::function<void(const QModelIndex& index)>& visit) const;
  /// The bytes that the rows keep, apart from their instances.
  [[nodiscard]] std::size_t GetBytes() const;

  /// Whether a filter is at work.
  [[nodiscard]] bool IsCalculating() const noexcept { return m_isCalculating; }
  /// Asks the filter at work to end, which it does with a result. False without one.
  bool CancelFilter();
  [[nodiscard]] ResultNote GetResultNote() const noexcept { return m_note; }

  // --- QAbstractItemModel ---

  using QObject::parent;
  [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
  [[nodiscard]] QModelIndex sibling(int row, int column, const QModelIndex& index) const override;
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] bool hasChildren(const QModelIndex& parent = {}) const override;
  [[nodiscard]] bool canFetchMore(const QModelIndex& parent) const override;
  /// Opens the placeholder of the row through the panel.
  void fetchMore(const QModelIndex& parent) override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  /// Checks and unchecks the visible state, through the setter.
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role = Qt::DisplayRole) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  // --- guitree::GuiInterface ---

  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer) override { m_observer = observer; }
  void StartTreeUpdate() override;
  void FinishTreeUpdate() override;
  void ClearTree() override;
  void Reset() override;
  void StoreExpandedAndFirstVisibleBeforePopulate(bool keepExpanded) override;
  void RestoreExpandedAfterPopulate() override;
  void RestoreFirstVisible() override;
  void InstanceCreate(guitree::FilteredTree::Node* node,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      bool repopulatePending) override;
  void FilterNodeCreate(guitree::FilteredTree::Node* node) override;
  void UpdateVisAndTypeIconChanges(const VisibleMap* visibleMap, const ChangeMap* visibleChangeMap,
                                   guitree::TypeIconMap* typeIconMap, const ChangeMap* typeIconChangeMap) override;
  void UpdateVisAndTypeIcons(const VisibleMap* visibleMap, guitree::TypeIconMap* typeIconMap) override;
  bool CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance) override;
  void UpdateNodeNames() override;
  void UpdateDisplayNames() override;
  void SelectItems(std::vector<du::SmartPtr<zelk::Object>>& items) override;
  void DeselectItems(std::vector<du::SmartPtr<zelk::Object>>& items) override;
  void ClearSelection() override;
  void RefreshSelection() override;
  void MadeVisible(bool visible) override;
  /// Answers whether there is such a row.
  bool SetAssocHlight(zelk::BaseInstance* instance, bool on) override;
  [[nodiscard]] bool IsTreeVisibleInUI() const override { return m_isInSight; }
  du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event) override;
  void SetTreeCalculating(bool calculating) override;
  void PostProcessingComplete() override;
  void ContentHasChanged() override;
  void UpdateStatusBar() override;
  void UpdateFilterUI() override;
  void UpdateTreeTable() override;
  void LoadSortingPrefs() override;
  void CurrentViewChanged() override;

Q_SIGNALS:
  /// A population begins: what a view wants to keep it must read now. The rows are still there.
  void PopulationBegins(bool keepsExpanded);
  /// The rows of a population are in; nothing has been painted yet.
  void Populated();
  /// The population is over: the time to scroll.
  void PopulationEnds();
  /// Rows are about to come, to go or to move one by one, and have done so: once each for a batch.
  void EditsBegin();
  void EditsEnd();
  /// The kernel's selection has changed, in all columns: what came, and what went. After a reset all that is selected
  /// comes, also where it was before. Only news are worth scrolling to: something was selected, also while the panel
  /// was out of sight; rows have not merely come back with their selection, and it was not merely read again.
  void SelectionTold(const QItemSelection& selected, const QItemSelection& deselected, bool isNews);
  /// How all rows look has changed; `dataChanged` has come for the topmost rows alone, which makes a view paint itself
  /// anew. Also where more has changed than would be worth telling apart.
  void LooksChanged();
  void CalculatingChanged(bool isCalculating);
  /// Of the filter at work, 0 to 100.
  void FilterProgressed(int percent);
  /// The tree has been edited while a filter is at work: its result may be of the tree before.
  void EditedMeanwhile();
  /// The result of a filter is in, see `GetResultNote`.
  void ResultShown();
  /// What a status bar tells of panel and selection may have changed.
  void StatusChanged();
  /// What the controls of the filter show may have changed.
  void FilterChanged();
  /// The number of rows may have changed.
  void RowsChanged();
  /// The rows are about to be sorted anew.
  void SortingDue();
  /// Another view is current.
  void ViewChanged();

private:
  using RowId = std::uint32_t;

  /// New rows that are neighbours, not yet told: they go in front of `next`, or last.
  struct Run {
    RowId parent = 0;
    RowId next = 0;
    std::vector<RowId> rows;
  };
  /// What was found above an instance without a row, which is held so that no other one gets its address.
  struct Above {
    Instance hold;
    RowId row = 0;
  };

  // Rows.
  [[nodiscard]] RowId _GetRow(const QModelIndex& index) const;
  [[nodiscard]] QModelIndex _CreateIndex(std::size_t position, int column, RowId row) const;
  /// Invalid for the top.
  [[nodiscard]] QModelIndex _MakeIndex(RowId row, int column = NameColumn) const;
  [[nodiscard]] RowId _FindRowAbove(const Instance& parent);
  [[nodiscard]] RowId _FindRowAbove(const guitree::FilteredTree::Node& node);
  [[nodiscard]] RowId _FindNextRow(const guitree::FilteredTree::Node& node, RowId parent);
  /// Among the children of its parent, those of the run included; none for the last.
  [[nodiscard]] RowId _GetRowBehind(RowId row);
  [[nodiscard]] RowId _FindNextRow(const zelk::BaseInstance& instance, RowId parent) const;
  [[nodiscard]] bool _IsNextRow(RowId row, RowId parent) const;
  /// Before a row comes: the first one of a result begins a reset.
  void _BeginResult(RowId parent);
  RowId _PutRow(const Instance& instance, RowId parent, RowId next);
  RowId _StageRow(const Instance& instance, RowId parent, RowId next);
  void _MoveRow(RowId row, RowId parent, RowId next);
  void _TellRun();
  void _NoteEdit();
  [[nodiscard]] std::vector<RowId> _CollectBranch(const Instance& instance);
  void _RemoveRows(std::vector<RowId>& rows);
  void _BeginRow(RowId row, const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight);
  void _SetPlaceholder(RowId row, bool isOn);
  void _BeginReset();
  void _EndReset();
  void _Clear();
  [[nodiscard]] std::list<zelk::BaseInstance*> _GetPath(RowId row) const;

  // Looks.
  [[nodiscard]] QVariant _GetLook(RowId row, int role) const;
  [[nodiscard]] QVariant _GetText(RowId row, int column) const;
  [[nodiscard]] QVariant _GetCheckState(RowId row) const;
  [[nodiscard]] int _ReadState(RowId row) const;
  [[nodiscard]] int _ReadIcon(RowId row) const;
  [[nodiscard]] QString _Describe(RowId row) const;
  void _NoteChanged(RowId row);
  void _NoteAllChanged();
  void _TellChanges();

  // Selection.
  void _Mark(const std::vector<du::SmartPtr<zelk::Object>>& items, bool isSelected);
  void _SetSelected(RowId row, bool isSelected);
  void _Deselect();
  void _ReadSelection();
  void _ResetSelection();
  void _TellSelection();
  [[nodiscard]] QItemSelection _MakeSelection(const std::vector<RowId>& rows) const;

  /// What is under way has ended, unless a bracket is open.
  void _Settle();
  /// Neighbours among the children of one row.
  struct Range {
    RowId parent;
    int first;
    int last;
  };
  [[nodiscard]] std::vector<Range> _FindRanges(const std::vector<RowId>& rows) const;

  du::SmartPtr<SceneManagerObserver> m_observer;
  std::shared_ptr<guitree::GuiTree* const> m_panel;
  std::unique_ptr<RowTable> m_rows;
  std::vector<du::DualSymbol> m_columns;
  IconProvider m_iconProvider;
  VisibilitySetter m_visibilitySetter;
  std::unordered_map<const zelk::BaseInstance*, Above> m_above;
  /// The row that came last to a population; 0 outside of one.
  RowId m_lastRow = 0;
  Run m_run;
  /// All rows that are not told yet, those below the run included.
  std::vector<RowId> m_staged;
  std::vector<RowId> m_changed;
  /// Each selected row, and others.
  std::vector<RowId> m_selected;
  /// A row for each time that its selection has changed since it was told last, those that went since included.
  std::vector<RowId> m_selectionChanged;
  /// The controller of a population, for a model without a panel.
  du::SmartPtr<guitree::TreeSelectionController> m_controller;
  du::SmartPtr<FilterProgress> m_progress;
  int m_depth = 0;
  int m_changing = 0;
  ResultNote m_note = ResultNote::None;
  bool m_isInSight = true;
  bool m_isCalculating = false;
  /// Between the begin and the end of a reset: rows come and go without a signal.
  bool m_isResetting = false;
  /// A filter has ended, and its result may come next.
  bool m_isResultDue = false;
  /// Its rows come while those of a tree without a filter stand.
  bool m_isResultOnTop = false;
  bool m_haveAllChanged = false;
  bool m_haveRowsChanged = false;
  bool m_isResultIn = false;
  bool m_haveEdits = false;
  bool m_isSelectionStale = false;
  bool m_isSelectionReset = false;
  bool m_isSelectionNews = false;
};

}  // namespace qthost
