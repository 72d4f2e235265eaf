#include "zelk/AsyncEvent.h"

namespace zelk {

AsyncEvent::AsyncEvent(bool hasWorker) : BaseAsyncEvent(hasWorker) {}

AsyncEvent::~AsyncEvent() = default;

}  // namespace zelk
