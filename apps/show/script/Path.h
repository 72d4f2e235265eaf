#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace script {

/// One name on the way to an instance.
struct PathStep {
  std::string name;
  /// Which one of those that match, in the order of the tree and counted from 1; 0 says nothing.
  std::size_t number = 0;

  friend bool operator==(const PathStep&, const PathStep&) = default;
};

/// Which instance a command is about: the first step stands for an instance anywhere in the tree, each further one for
/// a child of what the step before it stands for.
struct Path {
  /// The first step is the root of the tree.
  bool isFromRoot = false;
  std::vector<PathStep> steps{};

  friend bool operator==(const Path&, const Path&) = default;
};

/// A name as a script writes it: in quotes only where it needs them. Bytes of any kind come back when it is read.
[[nodiscard]] std::string QuoteName(std::string_view name);
[[nodiscard]] std::string ToText(const Path& path);

}  // namespace script
