#pragma once

#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "zelk/Object.h"

namespace zelk {

/// Something that stands in a selection list. It does not change once it is made, so any thread may read it.
class SelectionItem : public Object {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdSelectionItem, "zelk::SelectionItem", &Object::CLASS_TYPE};

  /// What kind of thing is selected.
  [[nodiscard]] virtual du::Symbol GetSelectionType() const = 0;
  /// The address that stands for the selected thing: items of one thing answer the same.
  [[nodiscard]] virtual const void* GetIdentity() const = 0;

  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

/// The order of selection sets: by the identity of what the items stand for, a null item first. Two items of one thing
/// are equal.
struct selection_compare_objects {
  [[nodiscard]] bool operator()(const du::SmartPtr<SelectionItem>& a, const du::SmartPtr<SelectionItem>& b) const;
};

}  // namespace zelk
