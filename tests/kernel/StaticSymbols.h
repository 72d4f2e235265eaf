#pragma once

#include "du/Symbol.h"

namespace kerneltest {

/// Symbols that the static initialisers of another file have read or made.
du::Symbol GetEarlySymbol();
du::Symbol GetEarlyEmpty();
bool WasEmptyWithoutTextEarly();
du::Symbol GetEarlyPropertyGroup();
du::Symbol GetEarlyRootId();

}  // namespace kerneltest
