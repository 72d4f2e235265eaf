#include "zelloader/ShapeLoaderEvent.h"

namespace zelloader {

ShapeLoaderEvent::ShapeLoaderEvent() : AsyncEvent(true) {}

ShapeLoaderEvent::~ShapeLoaderEvent() = default;

}  // namespace zelloader
