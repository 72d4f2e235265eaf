#pragma once

#include "memkernel/InstanceFlags.h"

namespace memkernel {

/// What the tree keeps in the flags of an instance for itself, above those of `InstanceFlag`.
enum InstanceBit : unsigned int {
  InstanceInTree = 1U << 16U,
  InstanceBaseRoot = 1U << 17U,
  /// The instance has a sibling of the same product, and is the first of them.
  InstanceHasGroup = 1U << 18U,
  InstanceFirstOfGroup = 1U << 19U,
  /// The list of its children is long and has an index.
  InstanceLongList = 1U << 20U,
};

}  // namespace memkernel
