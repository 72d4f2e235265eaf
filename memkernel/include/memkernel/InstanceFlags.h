#pragma once

namespace memkernel {

/// What an instance says of itself by the boolean queries of `zelk::Instance`; bits, to be combined. A new instance
/// takes them from its product.
enum InstanceFlag : unsigned int {
  InstancePlainIcon = 1U << 0U,
  /// `IsBodyInstance`: one of the bodies of a part.
  InstanceBody = 1U << 1U,
  InstanceBodyType = 1U << 2U,
  InstanceConstructionBodyType = 1U << 3U,
  /// Set by itself where the product has a shape.
  InstanceShapeSource = 1U << 4U,
  InstanceThumbnailSource = 1U << 5U,
  Instance3dSymbol = 1U << 6U,
  InstanceProxy = 1U << 7U,
  InstanceProxyExpanded = 1U << 8U,
  InstanceProxyExpandFailed = 1U << 9U,
  InstanceRootContainerRoot = 1U << 10U,
  /// All of the above; no other bit can be set from outside.
  InstanceAllFlags = (1U << 11U) - 1,
};

}  // namespace memkernel
