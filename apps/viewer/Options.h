#pragma once

#include <QStringList>
#include <optional>

namespace viewer {

/// What the command line asks for.
struct Options {
  QStringList files;
};

/// Help, the version and faults are written to the streams where they belong, and then `options` is empty.
struct ParsedOptions {
  std::optional<Options> options;
  /// Meaningful without `options`.
  int exitCode = 0;
};
[[nodiscard]] ParsedOptions ParseOptions(int argc, char** argv);

}  // namespace viewer
