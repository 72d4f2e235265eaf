#include "zelk/ShapeViewObserver.h"

namespace zelk {

void ShapeViewObserver::OnRenderStyleChanged() {}

}  // namespace zelk
