#pragma once

#include "du/RefCounted.h"

namespace memkernel {

class Tree;

/// The way from products and instances, which may outlive their tree, to it.
class TreeLink : public virtual du::RefCounted {
public:
  explicit TreeLink(Tree* owner) : tree(owner) {}

  /// Null once the tree has gone. Changed by the end of the tree alone, so that whoever keeps the tree reads it without
  /// the lock.
  Tree* tree;
};

}  // namespace memkernel
