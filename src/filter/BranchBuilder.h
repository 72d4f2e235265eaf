#pragma once

#include <cstddef>
#include <deque>
#include <utility>
#include <vector>

#include "filter/BuildTreeInfo.h"
#include "filter/ColumnSortOrder.h"
#include "filter/NodeLinks.h"
#include "guitree/FilteredTree.h"

namespace guitree {

/// Builds one branch of a filtered tree, from the kernel (`Child` is an instance) or from the tree of the hidden pass
/// (`Child` is a node). Works on a stack of its own: a branch may be deeper than a thread's stack takes.
///
/// Each instance gets a node before its children are looked at, and loses it again if neither the instance nor one
/// below it has passed the filter.
template <typename Child>
class FilteredTree::BranchBuilder {
public:
  BranchBuilder(FilteredTree& tree, BuildTreeInfo& info, bool hiddenPass)
      : m_tree(tree), m_info(info), m_hiddenPass(hiddenPass)
  {
  }

  /// Null when the run is cancelled on the way; what has been built stays linked.
  Node* Build(Node* parent, const Child& top)
  {
    Node* const result = _MakeNode(parent, top, _GetReference(top));
    if (result && _HasChildren(top)) {
      _OpenLevel(result, top);
    }
    while (m_level) {
      if (m_level->next == m_level->children.size()) {
        _CloseLevel();
      } else if (!_BuildChild(*m_level)) {
        return nullptr;
      }
    }
    return result;
  }

private:
  using Instance = du::SmartPtr<zelk::BaseInstance>;

  /// A node whose children are being made. Levels are used again, for the sake of their lists.
  struct Level {
    Node* node = nullptr;
    std::vector<Child> children;
    std::size_t next = 0;
    bool hasMatchedSibling = false;
    /// Of each child that was judged in the search for a match: whether it stands among the created items since then.
    /// Empty without a search.
    std::vector<bool> isCreated;
    /// Of the child under way.
    bool isKept = false;
    bool isRecorded = false;
    /// The last child that is kept with its branch unfilled.
    Node* pendingBranch = nullptr;
  };

  /// An instance that the search for a match has recorded, while its node is made.
  class KnownItem {
  public:
    KnownItem(FilteredTree& tree, const zelk::BaseInstance* item) : m_tree(tree) { m_tree.m_knownItem = item; }
    ~KnownItem() { m_tree.m_knownItem = nullptr; }
    KnownItem(const KnownItem&) = delete;
    KnownItem& operator=(const KnownItem&) = delete;

  private:
    FilteredTree& m_tree;
  };

  /// Makes the node of the next child, and a level for its children if there are any. False when the run is cancelled.
  [[nodiscard]] bool _BuildChild(Level& level)
  {
    const Child& child = level.children[level.next];
    const Instance& reference = _GetReference(child);
    level.isRecorded = !level.isCreated.empty() && level.isCreated[level.next];
    const KnownItem known(m_tree, level.isRecorded ? reference.Get() : nullptr);
    _JudgeChild(level, reference);
    ++level.next;
    Node* const node = _MakeNode(level.node, child, reference);
    if (!node) {
      return false;
    }
    if (_HasChildren(child)) {
      _OpenLevel(node, child);
    } else {
      _FinishChild(level, node);
    }
    return true;
  }

  /// Null when the run is cancelled.
  [[nodiscard]] Node* _MakeNode(Node* parent, const Child& child, const Instance& reference)
  {
    if (m_info.IsCanceled()) {
      return nullptr;
    }
    zelk::BaseInstance* const instance = _GetInstance(child);
    Node* const node = parent ? _NewChild(*parent, instance) : m_tree._NewNode(nullptr, instance, m_hiddenPass);
    m_info.CountNode();
    if (!m_tree.firstFilteredNode && !_IsFilteredOut(reference)) {
      m_tree.firstFilteredNode = node;
    }
    return node;
  }

  [[nodiscard]] Node* _NewChild(Node& parent, zelk::BaseInstance* instance)
  {
    Node* const node = m_tree._NewNode(instance);
    AppendChild(parent, *node);
    return node;
  }

  void _OpenLevel(Node* node, const Child& child)
  {
    _SetDepth(m_depth + 1);
    Level& level = *m_level;
    level.node = node;
    level.next = 0;
    level.pendingBranch = nullptr;
    _FillChildren(level.children, child);
    level.isCreated.clear();
    level.hasMatchedSibling = m_info.filter.GetShowSiblings() && _FindMatch(level);
  }

  void _SetDepth(std::size_t depth)
  {
    if (m_levels.size() < depth) {
      m_levels.emplace_back();
    }
    m_depth = depth;
    m_level = depth > 0 ? &m_levels[depth - 1] : nullptr;
  }

  [[nodiscard]] bool _FindMatch(Level& level)
  {
    bool hasMatch = false;
    for (const Child& child : level.children) {
      const Instance& reference = _GetReference(child);
      const bool isMatch = !_IsFilteredOut(reference);
      // Also of those that an exemption takes out again.
      level.isCreated.push_back(m_tree.createdItems.IsRecordedLast(reference));
      hasMatch = hasMatch || isMatch;
      if (isMatch && !m_tree.ForceCheckFilteringForAllItems(m_hiddenPass)) {
        break;
      }
    }
    level.isCreated.resize(level.children.size());
    return hasMatch;
  }

  void _JudgeChild(Level& level, const Instance& child)
  {
    if (!level.hasMatchedSibling) {
      level.isKept = !_IsFilteredOut(child);
    } else {
      level.isKept = true;
      if (m_tree.ForceCheckFilteringForAllItems(m_hiddenPass)) {
        m_tree.AddMatchedFilterItem(child, false);
      }
    }
    level.isRecorded = level.isRecorded || m_tree.createdItems.IsRecordedLast(child);
  }

  void _FinishChild(Level& level, Node* node)
  {
    if (!level.isKept && (!node->firstChild || IsPlaceholder(node->firstChild))) {
      _Prune(node);
      return;
    }
    if (level.isKept && IsPlaceholder(node->lastChild)) {
      level.pendingBranch = node;
    }
    if (!level.isKept || !level.isRecorded) {
      m_tree._KeepAlive(node->instance);
    }
  }

  void _Prune(Node* node)
  {
    UnlinkChild(*node);
    if (node->firstChild) {
      m_tree._DestroyBranch(node);
      return;
    }
    // Most that go have nothing below them. Without a walk that finds this out, the worker takes 0.98 times as long.
    m_tree._ForgetNode(node);
    delete node;
  }

  void _CloseLevel()
  {
    Level& level = *m_level;
    level.children.clear();
    const bool isSorted = ColumnSortOrder::IsColumn(m_info.filter.GetSortColumn());
    Node* const pending = level.pendingBranch;
    if (!isSorted && pending && pending != level.node->lastChild) {
      UnlinkChild(*pending);
      AppendChild(*level.node, *pending);
    }
    _SetDepth(m_depth - 1);
    if (m_level) {
      _FinishChild(*m_level, level.node);
    }
  }

  [[nodiscard]] bool _IsFilteredOut(const Instance& child)
  {
    return m_info._IsItemFilteredOut(child, m_hiddenPass, &m_tree);
  }

  static zelk::BaseInstance* _GetInstance(const Instance& child) { return child.Get(); }
  static zelk::BaseInstance* _GetInstance(const Node* child) { return child->instance; }
  static const Instance& _GetReference(const Instance& child) { return child; }
  static Instance _GetReference(const Node* child) { return Instance(child->instance); }
  static bool _HasChildren(const Instance& child) { return child && child->HasChildren(); }
  static bool _HasChildren(const Node* child) { return child->firstChild != nullptr; }
  void _FillChildren(std::vector<Instance>& out, const Instance& child)
  {
    m_tree._GetSortedBaseChildren(child, out, m_info);
  }
  void _FillChildren(std::vector<Node*>& out, Node* child) { m_tree._GetSortedNodeChildren(child, out, m_info); }

  FilteredTree& m_tree;
  BuildTreeInfo& m_info;
  const bool m_hiddenPass;
  /// Of which the first `m_depth` are in use. References to levels stay good while it grows.
  std::deque<Level> m_levels;
  std::size_t m_depth = 0;
  /// The last of these, looked up once for all of its children; null for none.
  Level* m_level = nullptr;
};

}  // namespace guitree
