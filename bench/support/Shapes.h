#pragma once

#include <cstddef>
#include <string_view>

#include "du/SmartPtr.h"
#include "memkernel/Tree.h"

namespace bench {

/// The forms of tree that are measured. All have one root, and as many products as a real assembly has.
enum class Shape {
  /// Assemblies of 8 to 12 children, some five or six levels, made depth first as an importer does.
  Typical,
  /// As `Typical`, but each instance goes under an assembly drawn by lot, so that neighbours in the tree are strangers
  /// in memory.
  Scattered,
  /// Parents with 100,000 children each.
  Wide,
  /// Chains of 1,000 levels below the root. A chain ten times as long takes `QStandardItemModel` minutes to destroy.
  Deep,
  /// One chain of all instances.
  Chain,
};

/// A tree of exactly `count` instances, which must be at least 1; the same one every time.
[[nodiscard]] du::SmartPtr<memkernel::Tree> MakeTree(Shape shape, std::size_t count);

}  // namespace bench
