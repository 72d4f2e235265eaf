#pragma once

#include "du/SmartPtr.h"
#include "zelk/Object.h"
#include "zelk/SelectionManager.h"

namespace zelk {

/// What is shown in views, with a selection of its own. Owner's thread.
class Scene : public Object {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdScene, "zelk::Scene", &Object::CLASS_TYPE};

  /// Overwrites `out`; may be null.
  virtual void GetSelectionManager(du::SmartPtr<SelectionManager>& out) const = 0;

  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
