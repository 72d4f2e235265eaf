#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace zelk {

const du::Symbol BaseInstanceDynamicPropertiesCache::s_GroupName("Instance");

}  // namespace zelk
