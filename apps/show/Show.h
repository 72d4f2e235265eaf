#pragma once

#include "Options.h"

/// Reads the files, shows them in one panel and writes it to stdout. Everything that went wrong is on stderr when it
/// returns.
[[nodiscard]] ExitCode Show(const Options& options);
