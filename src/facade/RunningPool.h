#pragma once

#include "du/TaskPool.h"

namespace guitree {

/// Null while no world runs, or one without workers.
[[nodiscard]] du::TaskPool* FindRunningPool();

}  // namespace guitree
