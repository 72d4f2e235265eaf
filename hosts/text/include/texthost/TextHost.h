#pragma once

#include <cstddef>
#include <iosfwd>
#include <list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "du/Symbol.h"
#include "guitree/GuiInterface.h"
#include "texthost/FilterProgress.h"

namespace guitree {
class GuiTree;
}

namespace texthost {

/// How `TextHost::Print` draws.
struct PrintStyle {
  /// Draws lines with ASCII characters. Names stay UTF-8, in which bytes that are none become `?`.
  bool ascii = false;
  /// Makes lines pale and marks stand out, for a terminal.
  bool color = false;
  /// How many levels below the topmost rows are printed. A row whose children are left out tells their number: `[+3]`.
  std::size_t depth = s_allLevels;
  /// Puts marks in front of the lines: selection, associated highlight and, where a scene is shown, the visible state.
  /// What stands in brackets behind the name is then the type icon, see `GetLegend`.
  bool states = false;

  static constexpr std::size_t s_allLevels = static_cast<std::size_t>(-1);
};

/// What a row reads of its instance.
struct RowText {
  enum class State : unsigned char { Plain, NotLoaded, Failed };

  /// Empty where there is none.
  du::Symbol name{};
  /// Of a failed row: the file that it stands for.
  du::Symbol file{};
  State state = State::Plain;
};

/// A host that keeps the rows it is told of and prints them as an indented tree: for terminals and scripts, and as an
/// example for those who write a host. It has what every host needs:
///
/// - Rows are known by their instances. A second `InstanceCreate` updates the row where it stands, and moves it if it
///   belongs under another row.
/// - A row whose parent has none, since it is hidden, goes under the nearest ancestor that has one, or to the top.
/// - Brackets are counted, and a finish without a start is passed over.
/// - A row is what the calls have told of it. Names, icons and states are read when a row comes and when a call tells
///   that they have changed, never in between; no map is kept.
///
/// With `PrintStyle::states` a panel with a scene looks like this (`GetLegend` explains the marks):
///
///       [-]  pump
///     > [x]* ├─ bolt:1
///      ~[ ]* ├─ bolt:2 [shape failed]
///       [ ]  └─ seal [no shape]
///
/// Of a filter it shows what the calls tell: the rows of the result, `…` below a row that can be opened, and a last
/// line where there is more to say: that the filter is at work, that it was cancelled, or that nothing has matched. The
/// result of a filter that was switched off at work leaves the rows that are there by then where they stand.
///
/// Rows hold their instances: an instance lives at least as long as its row. Owner's thread. A call costs the same
/// however many rows there are, apart from the removal of a row, which costs those below it, calls that tell of
/// several rows, which cost these, and calls that tell of all; a row that comes by itself, and not by a refill, also
/// costs the instances without a row behind it. Trees may be of any depth.
class TextHost : public guitree::GuiInterface {
public:
  using VisibleMap = du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>;
  using ChangeMap = du::HashMap<const zelk::BaseInstance*, int>;

  TextHost() = default;
  /// A copy would share the links of the rows.
  TextHost(const TextHost&) = delete;
  TextHost& operator=(const TextHost&) = delete;
  ~TextHost() override = default;

  /// The panel that this host is for; not owned, null for none. It is asked for what no call brings: how a row looks
  /// that comes while a scene is shown, which rows stand for what is selected, and what is selected when the selection
  /// is to be read again. Without it a new row reads as hidden, and has no icon until a call tells one; selected
  /// instances stand for themselves, the selection is never read again, and nobody tells that a filter has left
  /// nothing.
  void SetPanel(guitree::GuiTree* panel) noexcept { m_panel = panel; }

  /// One line a row, parents first, each ended by `\n`; nothing without rows, apart from the line about a filter: `(no
  /// match)` and the like. Levels from `s_maxIndent` on are not
  /// indented any further and tell their number instead, so that the text grows with the rows and not with their depth.
  void Print(std::ostream& out, const PrintStyle& style = {}) const;
  /// Null before `GuiTree::Initialise`.
  [[nodiscard]] const du::SmartPtr<SceneManagerObserver>& GetSceneManagerObserver() const { return m_observer; }
  [[nodiscard]] std::size_t GetRowCount() const noexcept { return m_rows.size(); }
  /// Whether a batch of edits is under way: the rows are then between two states.
  [[nodiscard]] bool IsUpdating() const noexcept { return m_depth > 0; }
  /// Whether the branch of the row has a placeholder, printed as its last child.
  [[nodiscard]] bool HasPlaceholder(const zelk::BaseInstance& instance) const;
  /// The way to the row from the top, what opening its placeholder asks for; empty without such a row.
  [[nodiscard]] std::list<zelk::BaseInstance*> GetPath(const zelk::BaseInstance& instance) const;

  /// Opens the placeholder of the row, through the panel. False without a panel, such a row or a placeholder, and while
  /// a filter is at work.
  bool Expand(const zelk::BaseInstance& instance);
  /// The filter job that was begun last, while it is at work; null otherwise.
  [[nodiscard]] const FilterProgress* GetFilterProgress() const noexcept;
  /// Asks that job to end; it shows the topmost row alone then, with a placeholder if it had found anything. False
  /// without a job.
  bool CancelFilter();

  static constexpr std::size_t s_maxIndent = 64;

  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer) override { m_observer = observer; }
  void UpdateVisAndTypeIconChanges(const VisibleMap* visibleMap, const ChangeMap* visibleChangeMap,
                                   guitree::TypeIconMap* typeIconMap, const ChangeMap* typeIconChangeMap) override;
  void UpdateVisAndTypeIcons(const VisibleMap* visibleMap, guitree::TypeIconMap* typeIconMap) override;
  void SelectItems(std::vector<du::SmartPtr<zelk::Object>>& items) override;
  void DeselectItems(std::vector<du::SmartPtr<zelk::Object>>& items) override;
  void ClearSelection() override;
  void RefreshSelection() override;
  void MadeVisible(bool visible) override;
  /// Answers whether there is such a row.
  bool SetAssocHlight(zelk::BaseInstance* instance, bool on) override;
  /// False: every change can be shown in place.
  bool CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance) override;
  void UpdateNodeNames() override;
  void UpdateDisplayNames() override;
  void StartTreeUpdate() override;
  void FinishTreeUpdate() override;
  void ClearTree() override;
  void RestoreExpandedAfterPopulate() override;
  void Reset() override;
  void InstanceCreate(guitree::FilteredTree::Node* node,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      bool repopulatePending) override;
  void FilterNodeCreate(guitree::FilteredTree::Node* node) override;
  du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event) override;
  void SetTreeCalculating(bool calculating) override;
  void PostProcessingComplete() override;

private:
  friend class TreePrinter;

  /// What there is to say about the rows as a whole.
  enum class Note : unsigned char { None, NoMatch, Cancelled };

  /// How rows come.
  enum class Coming : unsigned char {
    /// Each finds its place beside those that are there.
    Singly,
    /// From no row on, in order.
    Refill,
    /// In order, on top of rows: the result of a filter that has been switched off meanwhile. It tells nothing of
    /// the rows as a whole.
    OnTop,
  };

  struct Row {
    du::SmartPtr<zelk::BaseInstance> instance;
    RowText text;
    Row* parent = nullptr;
    Row* firstChild = nullptr;
    Row* lastChild = nullptr;
    Row* previous = nullptr;
    Row* next = nullptr;
    std::optional<int> icon;
    /// `VisibleStateNone` for a row that no scene says anything of.
    guitree::VisibleState visible = guitree::VisibleStateNone;
    bool hasPlaceholder = false;
  };

  /// What was found above a hidden instance, which is held so that no other one gets its address.
  struct Above {
    du::SmartPtr<zelk::BaseInstance> hold;
    Row* row = nullptr;
  };

  [[nodiscard]] Row* _FindRow(const zelk::BaseInstance* instance);
  [[nodiscard]] Note _FindNote() const;
  /// Whether the panel has a result, and that holds nothing that the filter has let through.
  [[nodiscard]] bool _HasEmptyResult() const;
  [[nodiscard]] Row& _FindRowAbove(const du::SmartPtr<zelk::BaseInstance>& parent);
  [[nodiscard]] Row& _FindRowAbove(const guitree::FilteredTree::Node& node);
  [[nodiscard]] Row* _FindNextRow(const guitree::FilteredTree::Node& node, const Row& parent);
  [[nodiscard]] Row* _FindNextRow(const zelk::BaseInstance& instance, const Row& parent);
  Row& _Place(const du::SmartPtr<zelk::BaseInstance>& instance, Row& parent, Row* next);
  void _SetPlaceholder(Row& row, bool isOn) const;
  /// The row and all below it.
  void _Erase(Row& top);
  void _Clear();

  /// How a row looks that has just come, or comes again.
  void _Begin(Row& row, const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight);
  void _BeginLook(Row& row) const;
  /// Each row, in the order of the text.
  template <typename Visit>
  void _ForEachRow(Visit visit);
  [[nodiscard]] std::optional<int> _ReadIcon(guitree::TypeIconMap& icons, const zelk::BaseInstance* instance) const;
  void _Mark(const std::vector<du::SmartPtr<zelk::Object>>& items, bool isSelected);
  [[nodiscard]] std::set<zelk::BaseInstance*> _FindInstances(
      const std::vector<du::SmartPtr<zelk::Object>>& items) const;
  void _ReadSelection();

  du::SmartPtr<SceneManagerObserver> m_observer;
  guitree::GuiTree* m_panel = nullptr;
  std::unordered_map<const zelk::BaseInstance*, Row> m_rows;
  /// Has no instance; the topmost rows are its children.
  Row m_top;
  std::unordered_map<const zelk::BaseInstance*, Above> m_above;
  /// Of the instances that have rows.
  std::unordered_set<const zelk::BaseInstance*> m_selected;
  std::unordered_set<const zelk::BaseInstance*> m_highlighted;
  /// Whether rows may have a visible state.
  bool m_showsScene = false;
  Coming m_coming = Coming::Singly;
  bool m_isCalculating = false;
  Note m_note = Note::None;
  /// Of the job that was begun last; null once its result is there.
  du::SmartPtr<FilterProgress> m_progress;
  int m_depth = 0;
};

/// The marks of `PrintStyle::states`, explained in a few lines, each ended by `\n`.
[[nodiscard]] std::string_view GetLegend();

/// What a row is called: the property "Display Name", else the name of the object, else `(unnamed)`. Printable as it
/// is, see `MakePrintable`.
[[nodiscard]] std::string ReadRowName(const zelk::BaseInstance& instance, bool ascii = false);

/// What stands in brackets behind the name: `failed`, with the property "Referenced File" if there is one, for a proxy
/// whose content could not be read, `not loaded` for one that was not opened; empty for all others. Printable as it is.
[[nodiscard]] std::string ReadRowState(const zelk::BaseInstance& instance, bool ascii = false);

}  // namespace texthost
