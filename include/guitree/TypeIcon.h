#pragma once

namespace guitree {

/// The numbers of the type icons that the library chooses. All are even: the odd number above one is the same icon for
/// an instance that is loaded. Hosts draw the pictures, and may add numbers of their own.
enum TypeIcon : int {
  /// Nothing to tell.
  IconPlain = 0,
  /// Neither shape nor thumbnail to load.
  IconNoSource = 2,
  /// A proxy that has not been expanded.
  IconProxy = 6,
  /// Expanded proxies.
  IconProxyNoShapeSource = 8,
  IconProxyShape = 10,
  IconProxyRejectedCopyrights = 12,
  IconProxyShapeFailed = 14,
  IconProxyExpandFailed = 16,
  /// With a thumbnail to load, beside a shape or alone.
  IconThumbnail = 18,
  IconThumbnailOnly = 20,
  /// In a geometry comparison.
  IconComparedFirst = 24,
  IconComparedOther = 26,
  IconShapeFailed = 28,
  IconRejectedCopyrights = 30,
  /// Equal siblings, while the first of them stands for all.
  IconCollapsedSibling = 32,
  IconCollapsedSiblingNoSource = 34,
  IconCollapsedSiblingThumbnail = 36,
  IconCollapsedSiblingThumbnailOnly = 38,
  IconCollapsedSiblingFailed = 40,
  IconCollapsedSiblingRejectedCopyrights = 42,
  IconBody = 44,
  IconConstructionBody = 46,
  /// Also for construction bodies.
  IconBodyNoShapeSource = 48,
  IconBodyFailed = 50,
  IconConstructionBodyFailed = 52,
};

}  // namespace guitree
