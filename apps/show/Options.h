#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "FilterSettings.h"
#include "texthost/TextHost.h"

/// What the command line asks for.
struct Options {
  std::vector<std::filesystem::path> files;
  /// The script to play; `-` for the standard input.
  std::optional<std::filesystem::path> script;
  texthost::PrintStyle style;
  /// Without a fault.
  FilterSettings filter;
  bool noBodies = false;
  bool collapse = false;
  bool trace = false;
  bool check = false;
  bool verbose = false;
};

enum ExitCode : int {
  ExitOk = 0,
  ExitFailure = 1,
  ExitUsage = 2,
  ExitInterrupted = 130,
};

/// Reads the command line and looks at the terminal for what it leaves open. Help, the version and faults are written
/// to the streams where they belong, and then `options` is empty.
struct ParsedOptions {
  std::optional<Options> options;
  /// Meaningful without `options`.
  ExitCode exitCode = ExitOk;
};
[[nodiscard]] ParsedOptions ParseOptions(int argc, char** argv);
