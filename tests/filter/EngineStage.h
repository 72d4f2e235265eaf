#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <list>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "guitree/FilteredTree.h"
#include "testsupport/NamedTree.h"
#include "testsupport/ScriptedFilter.h"
#include "zelk/AsyncEvent.h"

namespace filtertest {

using Instance = du::SmartPtr<zelk::BaseInstance>;
using Node = guitree::FilteredTree::Node;
using Names = std::vector<std::string>;

/// A filtered tree whose protected members a test may look at, and whose hooks answer what its members say.
class OpenTree : public guitree::FilteredTree {
public:
  bool isForced = true;
  /// Whether the hidden pass is forced where the other one is.
  bool isHiddenPassForced = true;
  /// Has the last word on what the filter rejects; without a function nothing is let through after all.
  std::function<bool(const Instance& instance)> isRejectedToo;
  /// Runs when a judging begins.
  std::function<void(bool hiddenPass)> onJudging;

  using FilteredTree::_ExpandNode;
  using FilteredTree::_FindMatchingHFTreeNode;
  using FilteredTree::AddMatchedFilterItem;
  using FilteredTree::BuildTreeInfo;
  using FilteredTree::firstFilteredNode;
  using FilteredTree::hfRoot;
  using FilteredTree::numHfInsts;
  using FilteredTree::root;
  using FilteredTree::rootIsHfTree;
  using FilteredTree::ShouldCreateFilterNode;

  /// An unfilled rest of a branch, as a cancelled run leaves one under the root.
  static Node* AddPlaceholder(Node* parent)
  {
    Node* const placeholder = new Node{.prevSibling = parent->lastChild, .parent = parent};
    (parent->lastChild ? parent->lastChild->nextSibling : parent->firstChild) = placeholder;
    parent->lastChild = placeholder;
    return placeholder;
  }

protected:
  [[nodiscard]] bool ForceCheckFilteringForAllItems(bool hiddenPass) override
  {
    if (onJudging) {
      onJudging(hiddenPass);
    }
    return isForced && (isHiddenPassForced || !hiddenPass);
  }
  [[nodiscard]] bool IsFilteredOutByAdditionalCheck(structure_utils::TreeFilterInfoBase& filter,
                                                    const Instance& instance) override
  {
    return isRejectedToo ? isRejectedToo(instance) : FilteredTree::IsFilteredOutByAdditionalCheck(filter, instance);
  }
};

/// Keeps the percentages that are reported.
class ReportedEvent : public zelk::AsyncEvent {
public:
  ReportedEvent() : AsyncEvent(true) {}

  std::vector<int> reports;

  bool Progress(unsigned char percent) override
  {
    reports.push_back(percent);
    return AsyncEvent::Progress(percent);
  }
};

[[nodiscard]] inline std::string NameOf(const zelk::BaseInstance* instance)
{
  return instance ? std::string(instance->GetObjectName().GetView()) : "...";
}

/// A branch as text: "root[a[b] ...]", the dots for a placeholder.
[[nodiscard]] inline std::string Show(const Node* node)
{
  if (!node) {
    return "none";
  }
  std::string text = NameOf(node->instance);
  for (const Node* child = node->firstChild; child; child = child->nextSibling) {
    text += (child == node->firstChild ? "[" : " ") + Show(child);
  }
  return node->firstChild ? text + "]" : text;
}

/// Sorted.
template <typename Set>
[[nodiscard]] Names NamesOf(const Set& instances)
{
  Names names;
  for (const auto& instance : instances) {
    names.push_back(NameOf(instance.Get()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

[[nodiscard]] inline Names NamesOf(const std::list<Node*>& nodes)
{
  Names names;
  for (const Node* node : nodes) {
    names.push_back(Show(node));
  }
  return names;
}

/// Fails if the links of a branch do not fit together, or a placeholder is anything but a last child.
inline void ExpectLinked(const Node* node)
{
  const Node* previous = nullptr;
  for (const Node* child = node->firstChild; child; child = child->nextSibling) {
    EXPECT_EQ(child->parent, node) << Show(node);
    EXPECT_EQ(child->prevSibling, previous) << Show(node);
    EXPECT_TRUE(child->instance || !child->nextSibling) << Show(node);
    ExpectLinked(child);
    previous = child;
  }
  EXPECT_EQ(node->lastChild, previous) << Show(node);
}

/// The node of that name in a branch; null if there is none.
[[nodiscard]] inline Node* Find(Node* node, std::string_view name)
{
  if (NameOf(node->instance) == name) {
    return node;
  }
  for (Node* child = node->firstChild; child; child = child->nextSibling) {
    if (Node* const found = Find(child, name)) {
      return found;
    }
  }
  return nullptr;
}

[[nodiscard]] inline Names MatchedOf(const guitree::FilteredTree& tree)
{
  guitree::FilteredTree::InstanceSet out;
  tree.GetMatchedFilterItems(out);
  return NamesOf(out);
}

[[nodiscard]] inline Names CreatedOf(const guitree::FilteredTree& tree)
{
  guitree::FilteredTree::CreatedSet out;
  tree.GetAllCreatedItems(out);
  return NamesOf(out);
}

/// A kernel tree and what a build of it is given. The filter lets nothing through at the start, counts what it is asked
/// and keeps the names; those of the hidden pass come with a stroke.
class Stage {
public:
  explicit Stage(std::string_view treeText) : kernel(treeText)
  {
    filter.onAsked = [this](const Instance& instance, std::set<Instance>& /*selected*/, bool hiddenPass,
                            du::SmartPtr<du::RefCounted>& /*additionalInfo*/, unsigned int* count) {
      asks.push_back(NameOf(instance.Get()) + (hiddenPass ? "'" : ""));
      ++*count;
      if (onAsk) {
        onAsk(asks.size());
      }
    };
    LetThrough({});
  }
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  /// What the visible pass lets through.
  void LetThrough(std::set<std::string> names) { m_visible = std::move(names), _SetFilter(); }
  /// Switches the hidden pass on, which leaves out what has one of the names.
  void Hide(std::set<std::string> names)
  {
    filter.hasHiddenPass = true;
    m_hidden = std::move(names);
    _SetFilter();
  }
  void Spare(const std::string& name) { spared.insert(kernel[name].Get()); }
  void Build() { Build(kernel.Get()->GetRootInstance()); }
  void Build(const Instance& rootInstance)
  {
    tree->BuildTree(filter, rootInstance, selection, additionalInfo, spared, event.Get());
  }
  void Cancel()
  {
    event = du::MakeSmart<ReportedEvent>();
    event->Cancel();
  }

  [[nodiscard]] std::string GetRows() const { return Show(tree->root); }
  [[nodiscard]] std::string GetHiddenRows() const { return Show(tree->hfRoot); }
  [[nodiscard]] Names GetMatched() const { return MatchedOf(*tree); }
  [[nodiscard]] Names GetCreated() const { return CreatedOf(*tree); }
  [[nodiscard]] std::string GetFirst() const
  {
    return tree->firstFilteredNode ? NameOf(tree->firstFilteredNode->instance) : "none";
  }
  [[nodiscard]] Node* operator[](std::string_view name) const { return Find(tree->root, name); }

  testsupport::NamedTree kernel;
  testsupport::ScriptedFilter filter;
  du::SmartPtr<OpenTree> tree = du::MakeSmart<OpenTree>();
  du::SmartPtr<guitree::TreeSelectionController> selection;
  du::SmartPtr<du::RefCounted> additionalInfo;
  std::set<zelk::BaseInstance*> spared;
  du::SmartPtr<ReportedEvent> event;
  Names asks;
  /// Runs inside each ask, with its number; the first one is 1.
  std::function<void(std::size_t ask)> onAsk;

private:
  void _SetFilter()
  {
    filter.filtersOut = [this](const Instance& instance, bool hiddenPass) {
      const std::string name = NameOf(instance.Get());
      return hiddenPass ? m_hidden.contains(name) : !m_visible.contains(name);
    };
  }

  std::set<std::string> m_visible;
  std::set<std::string> m_hidden;
};

}  // namespace filtertest
