#pragma once

#include "zelk/AsyncEvent.h"

namespace zelloader {

/// The event of one load. The loader's worker completes it, so a cancel only raises the flag.
class ShapeLoaderEvent : public zelk::AsyncEvent {
public:
  ShapeLoaderEvent();
  ~ShapeLoaderEvent() override;
};

}  // namespace zelloader
