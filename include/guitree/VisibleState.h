#pragma once

namespace guitree {

/// What a row reads as in one scene: visible or hidden by itself, and what its children say.
enum VisibleState {
  /// No state; ignored when children are inspected.
  VisibleStateNone = 0,
  /// Visible, and no child says otherwise: a leaf, or all children hidden.
  VisibleStateVisible = 1,
  /// Hidden; also the state of every instance that is in no map.
  VisibleStateHidden = 2,
  VisibleStateVisibleMixed = 3,
  VisibleStateHiddenMixed = 4,
  VisibleStateVisibleAllChildren = 5,
  VisibleStateHiddenAllChildren = 6,
  VisibleStateThumbnailVisible = 7,
  VisibleStateThumbnailHidden = 8,
};

}  // namespace guitree
