#pragma once

#include "du/SmartPtr.h"

namespace zelk {

class BaseInstance;

/// What `BaseTree::Visit` calls for each instance.
class BaseInstanceVisitor {
public:
  BaseInstanceVisitor() = default;
  BaseInstanceVisitor(const BaseInstanceVisitor&) = default;
  BaseInstanceVisitor& operator=(const BaseInstanceVisitor&) = default;

  /// True to go on, false to end the visit. Called without a lock; must not edit the tree.
  virtual bool VisitInstance(const du::SmartPtr<BaseInstance>& instance) = 0;

  virtual ~BaseInstanceVisitor() = default;
};

}  // namespace zelk
