#pragma once

#include <cstddef>

#include "guitree/FilteredTree.h"

namespace guitree {

/// The links between the nodes of a filtered tree.

[[nodiscard]] inline bool IsPlaceholder(const FilteredTree::Node* node)
{
  return node && !node->instance;
}

inline void AppendChild(FilteredTree::Node& parent, FilteredTree::Node& child)
{
  child.parent = &parent;
  child.prevSibling = parent.lastChild;
  (parent.lastChild ? parent.lastChild->nextSibling : parent.firstChild) = &child;
  parent.lastChild = &child;
}

/// Leaves the child without any link to where it was.
inline void UnlinkChild(FilteredTree::Node& child)
{
  FilteredTree::Node& parent = *child.parent;
  (child.prevSibling ? child.prevSibling->nextSibling : parent.firstChild) = child.nextSibling;
  (child.nextSibling ? child.nextSibling->prevSibling : parent.lastChild) = child.prevSibling;
  child.prevSibling = nullptr;
  child.nextSibling = nullptr;
  child.parent = nullptr;
}

/// Calls `beforeEnd` for each node of a branch and frees it, children before their parent; stops after `limit` nodes,
/// and answers how many it was. The top becomes null once it is freed. It must have been unlinked, or its parent be
/// forgotten.
template <typename Call>
std::size_t DestroyNodes(FilteredTree::Node*& top, std::size_t limit, Call beforeEnd)
{
  std::size_t count = 0;
  FilteredTree::Node* node = top;
  while (node && count < limit) {
    while (node->firstChild) {
      node = node->firstChild;
    }
    FilteredTree::Node* const parent = node == top ? nullptr : node->parent;
    if (parent) {
      parent->firstChild = node->nextSibling;
    }
    beforeEnd(node);
    delete node;
    ++count;
    node = parent;
  }
  if (!node) {
    top = nullptr;
  }
  return count;
}

}  // namespace guitree
