#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "hostcheck/ForwardingHost.h"

namespace hostcheck {

class RowBook;

/// Checks that calls keep to the protocol of `guitree::GuiInterface`, and passes each one on. Put it between a
/// `GuiTree` and a host, or let it stand alone with null:
///
///   hostcheck::ProtocolChecker checker(&host);
///   guiTree->SetGuiInterface(&checker);
///   ...
///   checker.CheckAtRest();
///   for (const std::string& violation : checker.GetViolations()) ...
///
/// These are violations:
/// - A parent gets its row after a row below it. A parent that gets no row at all is none: hidden instances have no
/// row,
///   and their children come all the same, with the hidden instance as parent.
/// - A row comes twice, or without an instance, or below a row that was removed in the same batch and has not come
/// back.
///   Twice is allowed where one population runs inside the brackets of another batch: that means to update and to move.
/// - A row that is not there is removed or renamed.
/// - Rows come, go or are cleared outside of brackets. A removal while a repopulation is pending may stand outside.
/// - `ClearTree` without the `StoreExpandedAndFirstVisibleBeforePopulate` that begins a population, or
///   `RestoreExpandedAfterPopulate` outside of brackets.
/// - Rows in a population after the host has said that the panel is not visible or not for this view.
/// - At rest: a bracket that is still open, a population that has begun and never cleared the rows.
///
/// A finish without a start is only a note, since a batch that shows nothing but new names ends that way.
///
/// Owner's thread. The cost of a call does not depend on the number of rows, apart from the removal of a row, which
/// costs those below it. Rows are kept as identities; only hidden parents are held.
class ProtocolChecker : public ForwardingHost {
public:
  using Callback = std::function<void(const std::string& violation)>;

  /// `next` as for `ForwardingHost`. `onViolation`, which may be empty, gets each violation at once, before the call is
  /// passed on.
  explicit ProtocolChecker(guitree::GuiInterface* next = nullptr, Callback onViolation = {});
  ProtocolChecker(const ProtocolChecker&) = delete;
  ProtocolChecker& operator=(const ProtocolChecker&) = delete;
  ~ProtocolChecker() override;

  /// The first violations, in order, at most `s_maxKept`, as in `call 7: InstanceCreate(bolt): the row is there
  /// already`. Calls are counted from 1, questions included.
  [[nodiscard]] const std::vector<std::string>& GetViolations() const noexcept { return m_violations; }
  [[nodiscard]] const std::vector<std::string>& GetNotes() const noexcept { return m_notes; }
  /// All of them, also those that are not kept.
  [[nodiscard]] std::size_t GetViolationCount() const noexcept { return m_violationCount; }
  /// How many rows there are now.
  [[nodiscard]] std::size_t GetRowCount() const;

  /// To be called while no batch should be under way.
  void CheckAtRest();

  static constexpr std::size_t s_maxKept = 1000;

  void StartTreeUpdate() override;
  void FinishTreeUpdate() override;
  void ClearTree() override;
  void StoreExpandedAndFirstVisibleBeforePopulate(bool keepExpanded) override;
  void RestoreExpandedAfterPopulate() override;
  bool CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance) override;
  void InstanceCreate(guitree::FilteredTree::Node* node,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      bool repopulatePending) override;
  void Reset() override;
  [[nodiscard]] bool IsTreeVisibleInUI() const override;
  bool IsValidView(const du::SmartPtr<zelk::View>& view) override;

private:
  struct Call {
    const char* name = nullptr;
    const zelk::BaseInstance* instance = nullptr;
  };
  /// Gives one ancestor after the other, the nearest first, and null at the end.
  using NextAncestor = std::function<du::SmartPtr<zelk::BaseInstance>()>;

  void _CreateRow(const du::SmartPtr<zelk::BaseInstance>& instance, const NextAncestor& nextAncestor);
  void _PlaceBelowAncestors(const Call& call, const zelk::BaseInstance& instance, const NextAncestor& nextAncestor);
  [[nodiscard]] bool _IsRemoved(const zelk::BaseInstance& instance);
  void _NoteAnswer(bool shows) const;
  void _RequireBracket(const Call& call);
  [[nodiscard]] std::string _Describe(const Call& call) const;
  void _Violate(const Call& call, const char* what);
  void _Report(const std::string& violation);
  static void _Keep(std::vector<std::string>& list, const std::string& text);

  Callback m_onViolation;
  std::vector<std::string> m_violations;
  std::vector<std::string> m_notes;
  std::size_t m_violationCount = 0;
  std::unique_ptr<RowBook> m_rows;
  // Held, so that no other instance gets the address before the batch ends.
  std::unordered_map<const zelk::BaseInstance*, du::SmartPtr<zelk::BaseInstance>> m_removedInBatch;
  int m_depth = 0;
  int m_populationsBegun = 0;
  bool m_populationInBatch = false;
  mutable bool m_justCleared = false;
  mutable bool m_mustStayEmpty = false;
};

}  // namespace hostcheck
