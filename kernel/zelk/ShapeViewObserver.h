#pragma once

#include "zelk/ViewObserver.h"

namespace zelk {

/// Listens to a view of shapes.
class ShapeViewObserver : public ViewObserver {
public:
  virtual void OnRenderStyleChanged();
};

}  // namespace zelk
