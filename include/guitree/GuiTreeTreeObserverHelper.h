#pragma once

#include <cstdint>
#include <memory>

#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeSelectionController.h"
#include "zelk/BaseInstance.h"

namespace guitree {

/// Decides for each burst of tree events whether the host gets single edits or one refill. A tree observer derives from
/// it beside its kernel class and passes its events on. Lives as long as that observer. Owner's thread.
///
/// A burst begins with the first event and ends with `Helper_OnEndUpdate`. The host's bracket is opened by the first
/// edit that reaches it. Which tree an event comes from is not tested. A `GuiTree` that ends inside a burst closes the
/// bracket, and after that nothing is done.
class GuiTree::GuiTreeTreeObserverHelper {
public:
  /// `tree` may be null: the object then does nothing.
  explicit GuiTreeTreeObserverHelper(GuiTree* tree);
  /// Memberwise: a copy made inside a burst goes on as if the bracket were its own.
  GuiTreeTreeObserverHelper(const GuiTreeTreeObserverHelper&) = default;
  GuiTreeTreeObserverHelper& operator=(const GuiTreeTreeObserverHelper&) = default;
  virtual ~GuiTreeTreeObserverHelper();

  /// Makes the row, and works out the visible state of `parent` again unless that is null. Nothing but the count while
  /// a refill is due. The symbol is not read.
  virtual void Helper_OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                                       const du::SmartPtr<zelk::BaseInstance>& parent, const du::Symbol& name);
  /// Takes the row away, and works out the visible state of `parent` again unless that is null. While a refill is due
  /// the state still lets go of the instance, outside any bracket if none has been opened.
  virtual void Helper_OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                                       const du::SmartPtr<zelk::BaseInstance>& parent);
  /// Passes a name on to the row. Nothing but the count while a refill is due.
  virtual void Helper_OnInstanceName(const du::SmartPtr<zelk::BaseInstance>& instance);
  /// Ends the burst: closes the bracket, and refills or delivers what has changed. A burst that asked for nothing makes
  /// no call. The bracket is closed also when nothing but names has changed, which opens none.
  virtual void Helper_OnEndUpdate();

  /// Counts an operation. The one after `s_maxSingleEdits` makes the burst end in a refill.
  void IncOpsDone();
  /// Opens the host's bracket, once a burst.
  void SetChanged();
  /// The two flags may also be set between bursts: they wait for the next end.
  void SetNodeNamesChanged() noexcept { nodeNamesChanged = true; }
  void SetRepopulateNeeded() noexcept { repopulateNeeded = true; }
  [[nodiscard]] bool GetRepopulateNeeded() const noexcept { return repopulateNeeded; }

  /// The most edits of one burst that a host gets one by one. From here on a refill costs it less.
  static constexpr std::uint64_t s_maxSingleEdits = 200;

protected:
  /// Null after the end of the `GuiTree`, and after `_Detach`.
  [[nodiscard]] GuiTree* _GetGuiTree() const noexcept;
  /// Lets go of the `GuiTree` for good. A bracket that is open is closed first.
  void _Detach();

private:
  /// Tells the host of the finish also if no start has been told.
  void _CloseBracket(GuiTree& tree);

  GuiTree* guiTree;
  bool treeUpdateStarted = false;
  bool repopulateNeeded = false;
  bool nodeNamesChanged = false;
  std::uint64_t opsDone = 0;
  du::SmartPtr<TreeSelectionController> selController;
  std::shared_ptr<GuiTree* const> m_livingGuiTree;
};

}  // namespace guitree
