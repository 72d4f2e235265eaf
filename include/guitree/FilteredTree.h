#pragma once

#include "du/RefCounted.h"
#include "zelk/BaseInstance.h"

namespace guitree {

/// The branches of a kernel tree that a filter has let through.
class FilteredTree : public virtual du::RefCounted {
public:
  /// A place in the tree. A plain record: children form a doubly linked list, and a parent owns its children.
  struct Node {
    /// Not counted: a node does not keep its instance alive. Null marks a placeholder, the unfilled rest of its
    /// parent's branch; it is always the last child.
    zelk::BaseInstance* instance = nullptr;
    Node* prevSibling = nullptr;
    Node* nextSibling = nullptr;
    Node* firstChild = nullptr;
    Node* lastChild = nullptr;
    /// Null at a root.
    Node* parent = nullptr;
  };
};

}  // namespace guitree
