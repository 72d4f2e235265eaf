#pragma once

#include <cstddef>
#include <iosfwd>
#include <list>
#include <string>
#include <unordered_map>

#include "guitree/GuiInterface.h"

namespace texthost {

/// How `TextHost::Print` draws.
struct PrintStyle {
  /// Draws lines with ASCII characters. Names stay UTF-8, in which bytes that are none become `?`.
  bool ascii = false;
  /// Makes lines pale and marks stand out, for a terminal.
  bool color = false;
  /// How many levels below the topmost rows are printed. A row whose children are left out tells their number: `[+3]`.
  std::size_t depth = s_allLevels;

  static constexpr std::size_t s_allLevels = static_cast<std::size_t>(-1);
};

/// A host that keeps the rows it is told of and prints them as an indented tree: for terminals and scripts, and as an
/// example for those who write a host. It has what every host needs:
///
/// - Rows are known by their instances. A second `InstanceCreate` updates and moves the row.
/// - A row whose parent has none, since it is hidden, goes under the nearest ancestor that has one, or to the top.
/// - Brackets are counted, and a finish without a start is passed over.
///
/// Rows hold their instances, so that names can be read when they are printed: an instance lives at least as long as
/// its row. Owner's thread. A call costs the same however many rows there are, apart from the removal of a row, which
/// costs those below it; trees may be of any depth.
class TextHost : public guitree::GuiInterface {
public:
  TextHost() = default;
  /// A copy would share the links of the rows.
  TextHost(const TextHost&) = delete;
  TextHost& operator=(const TextHost&) = delete;
  ~TextHost() override = default;

  /// One line a row, parents first, each ended by `\n`; nothing without rows. Levels from `s_maxIndent` on are not
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

  static constexpr std::size_t s_maxIndent = 64;

  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer) override { m_observer = observer; }
  /// Nothing to do: all that is printed is read when it is printed.
  void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* /*visibleMap*/,
                                   const du::HashMap<const zelk::BaseInstance*, int>* /*visibleChangeMap*/,
                                   guitree::TypeIconMap* /*typeIconMap*/,
                                   const du::HashMap<const zelk::BaseInstance*, int>* /*typeIconChangeMap*/) override
  {
  }
  void StartTreeUpdate() override;
  void FinishTreeUpdate() override;
  void ClearTree() override;
  void Reset() override;
  void InstanceCreate(guitree::FilteredTree::Node* node,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      bool repopulatePending) override;
  void FilterNodeCreate(guitree::FilteredTree::Node* node) override;

private:
  friend class TreePrinter;

  struct Row {
    du::SmartPtr<zelk::BaseInstance> instance;
    Row* parent = nullptr;
    Row* firstChild = nullptr;
    Row* lastChild = nullptr;
    Row* previous = nullptr;
    Row* next = nullptr;
    bool hasPlaceholder = false;
  };

  /// What was found above a hidden instance, which is held so that no other one gets its address.
  struct Above {
    du::SmartPtr<zelk::BaseInstance> hold;
    Row* row = nullptr;
  };

  [[nodiscard]] Row* _FindRow(const zelk::BaseInstance* instance);
  [[nodiscard]] Row& _FindRowAbove(const du::SmartPtr<zelk::BaseInstance>& parent);
  [[nodiscard]] Row& _FindRowAbove(const guitree::FilteredTree::Node& node);
  [[nodiscard]] Row* _FindNextRow(const guitree::FilteredTree::Node& node, const Row& parent);
  void _Place(const du::SmartPtr<zelk::BaseInstance>& instance, Row& parent, Row* next);
  /// The row and all below it.
  void _Erase(Row& top);
  void _Clear();

  du::SmartPtr<SceneManagerObserver> m_observer;
  std::unordered_map<const zelk::BaseInstance*, Row> m_rows;
  /// Has no instance; the topmost rows are its children.
  Row m_top;
  std::unordered_map<const zelk::BaseInstance*, Above> m_above;
  int m_depth = 0;
};

/// What a row is called: the property "Display Name", else the name of the object, else `(unnamed)`. Printable as it
/// is, see `MakePrintable`.
[[nodiscard]] std::string ReadRowName(const zelk::BaseInstance& instance, bool ascii = false);

/// What stands in brackets behind the name: `failed`, with the property "Referenced File" if there is one, for a proxy
/// whose content could not be read, `not loaded` for one that was not opened; empty for all others. Printable as it is.
[[nodiscard]] std::string ReadRowState(const zelk::BaseInstance& instance, bool ascii = false);

}  // namespace texthost
