#pragma once

#include <vector>

#include "dom/Observer.h"
#include "du/SmartPtr.h"
#include "zelk/Object.h"
#include "zelk/SelectionItem.h"

namespace zelk {

/// Listens to one list of a selection manager. A change is told between `OnBeginUpdate` and `OnEndUpdate`: first as a
/// whole by `OnSelectionChanged`, then by the three callbacks on objects. Owner's thread only.
class SelectionObserver : public dom::Observer {
public:
  virtual void EventHandler(const du::SmartPtr<dom::Message>& message);
  /// With `clearFirst` everything that was in the list has gone and `removed` is empty; `removed` and `added` are
  /// disjoint.
  virtual void OnSelectionChanged(unsigned int list, bool clearFirst,
                                  const std::vector<du::SmartPtr<SelectionItem>>& removed,
                                  const std::vector<du::SmartPtr<SelectionItem>>& added);
  virtual void OnInsertItems(std::vector<du::SmartPtr<Object>>& items);
  virtual void OnRemoveItems(std::vector<du::SmartPtr<Object>>& items);
  virtual void OnClearSelection();
  virtual void OnBeginUpdate();
  virtual void OnEndUpdate();

  /// Refuses while the observer is registered, as for `zelk::Observer`.
  [[nodiscard]] bool ZeroReferenceCountHook() const override;
  void HandleMessage(const du::SmartPtr<dom::Message>& message) final;
};

}  // namespace zelk
