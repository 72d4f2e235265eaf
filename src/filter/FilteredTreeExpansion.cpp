// How a branch of a finished tree is filled on demand, on the owner's thread.

#include <iterator>
#include <mutex>
#include <set>
#include <utility>

#include "dp/ReadWriteLock.h"
#include "filter/NodeLinks.h"
#include "guitree/FilteredTree.h"
#include "zelk/BaseTree.h"

namespace guitree {
namespace {

using Node = FilteredTree::Node;
using Instance = du::SmartPtr<zelk::BaseInstance>;

/// The caller of an expansion may still look at its placeholder, so none is ever freed.
void KeepForLife(Node* placeholder)
{
  static std::mutex s_mutex;
  static auto* const s_placeholders = new std::vector<Node*>;
  const std::lock_guard lock(s_mutex);
  s_placeholders->push_back(placeholder);
}

/// Waits until a writer at work has ended.
void WaitForWriter(const zelk::BaseInstance& instance)
{
  du::SmartPtr<zelk::BaseTree> tree;
  instance.GetBaseTree(tree);
  const dp::ReadGuard barrier(tree ? tree->GetReadWriteLock() : nullptr);
}

std::vector<Node*> GetChildren(const Node& parent)
{
  std::vector<Node*> children;
  for (Node* child = parent.firstChild; child; child = child->nextSibling) {
    children.push_back(child);
  }
  return children;
}

std::vector<Instance> GetKernelChildren(const zelk::BaseInstance& parent)
{
  std::vector<Instance> children;
  parent.GetBaseChildren(children);
  return children;
}

const zelk::BaseInstance* GetInstance(const Node* child)
{
  return child->instance;
}

const zelk::BaseInstance* GetInstance(const Instance& child)
{
  return child.Get();
}

/// The children of a source that `node` has no node for, in their order. Empty for a branch that is complete: one with
/// as many children as its source. A placeholder at its end has gone by then, if it had one.
template <typename Child>
std::vector<Child> FindMissing(const Node& node, std::vector<Child> source, bool hadPlaceholder)
{
  std::set<const zelk::BaseInstance*> present;
  std::size_t count = 0;
  for (const Node* child = node.firstChild; child; child = child->nextSibling) {
    present.insert(child->instance);
    ++count;
  }
  if (!hadPlaceholder && count == source.size()) {
    return {};
  }
  std::erase_if(source, [&present](const Child& child) { return present.contains(GetInstance(child)); });
  return source;
}

/// Takes a placeholder at the end of the children out. False if there is none.
bool TakeOutPlaceholder(const Node& node)
{
  Node* const last = node.lastChild;
  if (!IsPlaceholder(last)) {
    return false;
  }
  UnlinkChild(*last);
  KeepForLife(last);
  return true;
}

}  // namespace

void FilteredTree::ExpandNode(Node* placeholder, std::list<Node*>* created)
{
  WaitForWriter(*root->instance);
  Node* const sibling = placeholder->prevSibling;
  if (sibling && !sibling->firstChild) {
    for (Node* node = sibling; node;) {
      // Its last child is read before the expansion gives it any.
      Node* const next = node->lastChild;
      _ExpandNode(node, created);
      node = next;
    }
  }
  _ExpandNode(placeholder->parent, created);
}

void FilteredTree::_ExpandNode(Node* node, std::list<Node*>* created)
{
  if (!node->instance) {
    return;
  }
  if (!hfRoot) {
    const auto source = GetKernelChildren(*node->instance);
    for (const Instance& child : FindMissing(*node, source, TakeOutPlaceholder(*node))) {
      if (created) {
        created->push_back(_BuildTree(node, child, nullptr, false));
      }
    }
    return;
  }
  const Node* const source = _FindMatchingHFTreeNode(node);
  if (!source) {
    return;
  }
  for (Node* const child : FindMissing(*node, GetChildren(*source), TakeOutPlaceholder(*node))) {
    if (created) {
      created->push_back(_BuildTree(node, nullptr, child, false));
    }
  }
}

FilteredTree::Node* FilteredTree::_FindMatchingHFTreeNode(Node* node)
{
  if (!hfRoot) {
    return nullptr;
  }
  std::vector<const zelk::BaseInstance*> path;
  for (const Node* step = node; step; step = step->parent) {
    path.push_back(step->instance);
  }
  if (path.empty() || path.back() != hfRoot->instance) {
    return nullptr;
  }
  Node* found = hfRoot;
  for (auto next = std::next(path.rbegin()); found && next != path.rend(); ++next) {
    found = found->firstChild;
    while (found && found->instance != *next) {
      found = found->nextSibling;
    }
  }
  return found;
}

FilteredTree::Node* FilteredTree::_BuildTree(Node* parent, const Instance& instance, Node* source, bool hiddenPass)
{
  if (instance || !source) {
    return _CopyKernelBranch(parent, instance, hiddenPass);
  }
  return _CopyNodeBranch(parent, source, hiddenPass);
}

FilteredTree::Node* FilteredTree::_CopyKernelBranch(Node* parent, const Instance& instance, bool hiddenPass)
{
  struct Level {
    Node* node = nullptr;
    std::vector<Instance> children;
    std::size_t next = 0;
  };
  std::vector<Level> levels;
  const auto open = [&](Node* above, const Instance& child) {
    Node* const node = _NewUnfilteredNode(above, child.Get(), hiddenPass);
    _KeepAlive(child.Get());
    if (child && child->HasChildren()) {
      levels.push_back({.node = node, .children = GetKernelChildren(*child)});
    }
    return node;
  };
  Node* const result = open(parent, instance);
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.next == level.children.size()) {
      levels.pop_back();
      continue;
    }
    const Instance child = level.children[level.next++];
    open(level.node, child);
  }
  return result;
}

FilteredTree::Node* FilteredTree::_CopyNodeBranch(Node* parent, Node* source, bool hiddenPass)
{
  Node* const result = _NewUnfilteredNode(parent, source->instance, hiddenPass);
  Node* copy = result;
  for (const Node* node = source;;) {
    if (node->firstChild) {
      node = node->firstChild;
      copy = _NewUnfilteredNode(copy, node->instance, hiddenPass);
      continue;
    }
    while (node != source && !node->nextSibling) {
      node = node->parent;
      copy = copy->parent;
    }
    if (node == source) {
      return result;
    }
    node = node->nextSibling;
    copy = _NewUnfilteredNode(copy->parent, node->instance, hiddenPass);
  }
}

FilteredTree::Node* FilteredTree::_NewUnfilteredNode(Node* parent, zelk::BaseInstance* instance, bool hiddenPass)
{
  Node* const node = _NewNode(parent, instance, hiddenPass);
  // Once there is a first match, what is filled on demand takes its place.
  if (firstFilteredNode) {
    firstFilteredNode = node;
  }
  return node;
}

}  // namespace guitree
