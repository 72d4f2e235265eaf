#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

#include "memkernel/World.h"

struct ReadSummary {
  /// How many files are in the tree.
  std::size_t files = 0;
  /// Ctrl-C has ended the reading early.
  bool interrupted = false;
};

/// Reads the files into the empty tree of `world`: one as its root, several below a common root. Files that cannot be
/// read leave nothing there; they and all warnings are named on stderr, where a terminal also shows how far it has
/// come.
[[nodiscard]] ReadSummary ReadFiles(const std::vector<std::filesystem::path>& files, const memkernel::World& world);
