#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <set>
#include <vector>

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "guitree/CreatedItems.h"
#include "guitree/InstsComperator.h"
#include "guitree/MatchedItems.h"
#include "guitree/TreeSelectionController.h"
#include "structure_utils/TreeFilterInfoBase.h"
#include "zelk/AsyncEvent.h"
#include "zelk/BaseInstance.h"
#include "zelk/BaseTree.h"

namespace guitree {

/// The branches of a kernel tree that a filter has let through. Filled once by a filter job, on its worker, which alone
/// knows the object by then; afterwards it belongs to the owner's thread, where its last reference must go as well.
///
/// The tree is made and taken apart without recursion, so its depth costs heap and not stack. Who walks a result by
/// recursion, as tree states do, has a limit: see `TreeStateBase::_VisitFilteredTreeNode`.
///
/// The instances of all nodes are kept alive, also those that the kernel removes later: a row may be stale, a node
/// never dangles.
class FilteredTree : public virtual du::RefCounted {
public:
  /// A place in the tree. A plain record: children form a doubly linked list, and a parent owns its children.
  struct Node {
    /// Not counted by the node itself. Null marks a placeholder, the unfilled rest of its parent's branch; it is always
    /// the last child.
    zelk::BaseInstance* instance = nullptr;
    Node* prevSibling = nullptr;
    Node* nextSibling = nullptr;
    Node* firstChild = nullptr;
    Node* lastChild = nullptr;
    /// Null at a root.
    Node* parent = nullptr;
  };
  using InstanceSet = MatchedItems::Set;
  using CreatedSet = CreatedItems::Set;

  FilteredTree();
  /// Memberwise: nodes are shared and not duplicated, so only one of source and copy may own a tree when it ends.
  FilteredTree(const FilteredTree&);
  FilteredTree& operator=(const FilteredTree&);
  /// A large tree is taken apart on a worker of the running world, where there is one.
  ~FilteredTree() override;
  [[nodiscard]] bool ZeroReferenceCountHook() const override;

  /// Replaces `out` with the instances that passed the filter. Costs their number, and a search each where their
  /// addresses do not ascend.
  virtual void GetMatchedFilterItems(InstanceSet& out) const;
  /// Whether nothing passed the filter. There may be nodes all the same: the root, and ancestors.
  [[nodiscard]] virtual bool IsFilteredTreeEmpty() const;
  /// Replaces `out` with the instances that passed, and the siblings that are shown with them. Mere ancestors of a
  /// match are not among them. Costs their number.
  virtual void GetAllCreatedItems(CreatedSet& out) const;
  /// Whether `GetAllCreatedItems` lists the instance, or one with the same two keys. Logarithmic cost; the first
  /// question after a cancelled run costs a sort of what that run has found.
  [[nodiscard]] virtual bool IsContainItem(const du::SmartPtr<zelk::BaseInstance>& instance) const;

  /// Builds the tree of `rootInstance`, which takes the place of what the object held; the two sets go on to list what
  /// they listed. Holds the read side of the kernel tree's lock for its whole length, so that the kernel's writers
  /// wait. `rootInstance` null gives an empty tree; `selection`, `additionalInfo` and `event` may be null. Instances of
  /// `notFiltered` are exempt from the filter, and their children with them, apart from bodies under `GetHideBodies`.
  /// With any exemption, a child of the topmost instance that `IsRootFilteredOut` rejects is filtered out, unless it is
  /// an instance of `notFiltered` itself.
  ///
  /// A cancel of `event` is seen at the next node and leaves the root over a placeholder. Progress is reported for
  /// every 2,500 nodes; two passes over the tree report more than 100 on the way, and at most 255.
  void BuildTree(structure_utils::TreeFilterInfoBase& filter, du::SmartPtr<zelk::BaseInstance> rootInstance,
                 du::SmartPtr<TreeSelectionController> selection, du::SmartPtr<du::RefCounted>& additionalInfo,
                 const std::set<zelk::BaseInstance*>& notFiltered, zelk::AsyncEvent* event);
  /// Fills the branch that `placeholder` stands for, unfiltered: from the hidden-filter tree where there is one,
  /// otherwise from the kernel. A leaf right before the placeholder is filled first. The topmost new nodes are appended
  /// to `created`; with null nothing is made, though the placeholder goes. The tree must have a root and the
  /// placeholder a parent. Owner's thread.
  void ExpandNode(Node* placeholder, std::list<Node*>* created);

  /// Null before a build, and after one without a root instance.
  [[nodiscard]] Node* GetRoot() { return root; }
  /// The first node whose instance passed the filter; null for none.
  [[nodiscard]] Node* GetFirstFilteredNode() { return firstFilteredNode; }
  /// What the filter has counted; 0 after a run of nothing but the hidden pass.
  [[nodiscard]] unsigned int GetNumInsts() const { return numInsts; }
  /// How many instances passed the filter, each counted once, unlike in `GetNumInsts`. Constant cost; where two passes
  /// or two builds have recorded, that of `GetMatchedFilterItems`.
  [[nodiscard]] std::size_t GetNumMatchedItems() const;
  /// The number of nodes of the hidden-filter tree, placeholders included; 0 without one. Counted by the first call.
  [[nodiscard]] unsigned int GetNumHfInsts();
  /// The node of an instance, found along the chain of its parents: the two topmost instances of the chain both stand
  /// for the root, without a comparison. Null for a null instance and for one that has no node.
  [[nodiscard]] Node* GetNode(du::SmartPtr<zelk::BaseInstance> instance);
  /// Takes an instance out of the matches; its node stays, and `IsContainItem` goes on to know it.
  void RemoveHiddenItem(const du::SmartPtr<zelk::BaseInstance>& instance);

protected:
  struct BuildTreeInfo;

  /// Whether every instance that the given pass visits is run through the filter and recorded. True by default. On
  /// false the search for a match among siblings ends at the first, and nothing is recorded.
  [[nodiscard]] virtual bool ForceCheckFilteringForAllItems(bool hiddenPass);
  /// Records an instance as created, and with `matched` as one that passed. Nothing for null.
  virtual void AddMatchedFilterItem(const du::SmartPtr<zelk::BaseInstance>& instance, bool matched);
  /// Asked about an instance that the filter rejects; false turns the rejection into a match. True by default.
  [[nodiscard]] virtual bool IsFilteredOutByAdditionalCheck(structure_utils::TreeFilterInfoBase& filter,
                                                            const du::SmartPtr<zelk::BaseInstance>& instance);
  /// For derived classes; nothing here calls it. True by default.
  [[nodiscard]] virtual bool ShouldCreateFilterNode();

  /// For the hooks above: the filter of the build under way, null at other times.
  [[nodiscard]] const structure_utils::TreeFilterInfoBase* GetFilterOfRun() const noexcept { return m_filterOfRun; }

  /// Makes the branch of `instance`, or of the node `source` where that is null, below `parent`; a null parent makes it
  /// the root of the hidden pass or of the visible one. Null when the run is cancelled.
  Node* _BuildTree(Node* parent, const du::SmartPtr<zelk::BaseInstance>& instance, Node* source, BuildTreeInfo& info,
                   bool hiddenPass);
  /// The same without a filter: everything below, in the order of the kernel or of the source.
  Node* _BuildTree(Node* parent, const du::SmartPtr<zelk::BaseInstance>& instance, Node* source, bool hiddenPass);
  /// Replace `out` with the children in the order of the filter's sort column; without one in that of the kernel, or of
  /// the node.
  void _GetSortedBaseChildren(du::SmartPtr<zelk::BaseInstance> instance,
                              std::vector<du::SmartPtr<zelk::BaseInstance>>& out, BuildTreeInfo& info);
  void _GetSortedNodeChildren(Node* node, std::vector<Node*>& out, BuildTreeInfo& info);
  void _ExpandNode(Node* node, std::list<Node*>* created);
  /// The node of the hidden-filter tree that stands for `node`; null if that tree has none.
  [[nodiscard]] Node* _FindMatchingHFTreeNode(Node* node);

  /// What the host sees. Owned, as `hfRoot`.
  Node* root = nullptr;
  /// The result of the hidden pass, kept while a visible pass was made on top of it.
  Node* hfRoot = nullptr;
  Node* firstFilteredNode = nullptr;
  /// 0 until counted.
  unsigned int numHfInsts = 0;
  unsigned int numInsts = 0;
  /// Whether `root` is the result of the hidden pass.
  bool rootIsHfTree = false;
  MatchedItems matchedItems;
  CreatedItems createdItems;

private:
  friend class GenerateFilteredTreeTask;
  template <typename Child>
  class BranchBuilder;

  /// Trees that nobody can reach any more, and so no derived class can take out of a copy: a copy begins without any.
  struct DiscardedTrees {
    DiscardedTrees() = default;
    DiscardedTrees(const DiscardedTrees&) {}
    DiscardedTrees& operator=(const DiscardedTrees&) { return *this; }
    ~DiscardedTrees() = default;

    std::vector<Node*> list;
    std::size_t size = 0;
  };

  void _BuildPasses(const du::SmartPtr<zelk::BaseInstance>& rootInstance, BuildTreeInfo& info);
  void _EndBuild(zelk::BaseInstance* rootInstance, const BuildTreeInfo& info);
  Node* _NewNode(Node* parent, zelk::BaseInstance* instance, bool hiddenPass);
  /// Not linked yet.
  Node* _NewNode(zelk::BaseInstance* instance)
  {
    Node* const node = new Node{.instance = instance};
    ++m_nodeCount;
    return node;
  }
  Node* _NewUnfilteredNode(Node* parent, zelk::BaseInstance* instance, bool hiddenPass);
  Node* _CopyKernelBranch(Node* parent, const du::SmartPtr<zelk::BaseInstance>& instance, bool hiddenPass);
  Node* _CopyNodeBranch(Node* parent, Node* source, bool hiddenPass);
  void _DestroyBranch(Node* node);
  /// Before the node is freed.
  void _ForgetNode(const Node* ending)
  {
    --m_nodeCount;
    if (firstFilteredNode == ending) {
      firstFilteredNode = nullptr;
    }
  }
  void _ResetTrees();
  /// Owner's thread.
  void _DisposeOfDiscarded();
  void _KeepAlive(zelk::BaseInstance* instance);
  /// Before something begins to record what may have been recorded.
  void _NoteRepeats();

  /// Instances of nodes that the two sets do not list: ancestors of matches, spared ones, and what was filled on
  /// demand.
  InstanceList m_keptAlive;
  /// The trees of a cancelled run. Owned; taking them apart takes as long as building them has, so that is put off.
  DiscardedTrees m_discarded;
  /// The tree that a job reads; null outside of its run.
  const zelk::BaseTree* m_treeOfJob = nullptr;
  const structure_utils::TreeFilterInfoBase* m_filterOfRun = nullptr;
  std::size_t m_nodeCount = 0;
  /// Was recorded with the others beside it as one that passed; null for none.
  const zelk::BaseInstance* m_knownItem = nullptr;
  /// Whether an instance may have been recorded more than once.
  bool m_mayRepeat = false;
};

}  // namespace guitree
