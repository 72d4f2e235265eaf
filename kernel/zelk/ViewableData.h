#pragma once

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "zelk/Object.h"

namespace zelk {

/// What `TreeObserver` is told of a viewable that an instance gains or loses.
class ViewableData : public virtual du::RefCounted {
public:
  /// Null when the record holds no viewable.
  du::SmartPtr<Object> viewable;
};

}  // namespace zelk
