// How long a log takes to follow what is shown and hidden, one leaf after the other.

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "guitree/SceneInfoLog.h"
#include "memkernel/Tree.h"
#include "support/Measure.h"

namespace bench {
namespace {

using guitree::SceneInfoLog;
using InstancePtr = du::SmartPtr<memkernel::Instance>;
using Leaves = std::vector<InstancePtr>;

constexpr std::size_t s_fanOut = 10;
constexpr std::size_t s_depth = 10;

struct LeafTree {
  du::SmartPtr<memkernel::Tree> tree = du::MakeSmart<memkernel::Tree>();
  du::SmartPtr<memkernel::Product> product = tree->CreateProduct({.name = "Part"});
  InstancePtr root = tree->CreateRoot(product);
  /// Those that are shown and hidden, in the order of the tree.
  Leaves leaves;
};

/// `count` leaves below one parent, which is not the root.
LeafTree MakeWide(std::size_t count)
{
  LeafTree made;
  const InstancePtr parent = made.tree->AddChild(made.root, made.product);
  for (std::size_t left = count; left > 0; --left) {
    made.leaves.push_back(made.tree->AddChild(parent, made.product));
  }
  return made;
}

/// Ten children below each parent, down to `count` leaves, which is a power of ten.
LeafTree MakeSpread(std::size_t count)
{
  LeafTree made;
  made.leaves.push_back(made.root);
  while (made.leaves.size() < count) {
    Leaves children;
    children.reserve(made.leaves.size() * s_fanOut);
    for (const InstancePtr& parent : made.leaves) {
      for (std::size_t left = s_fanOut; left > 0; --left) {
        children.push_back(made.tree->AddChild(parent, made.product));
      }
    }
    made.leaves = std::move(children);
  }
  return made;
}

/// One leaf below ten levels of ten instances each.
LeafTree MakeDeepLeaf()
{
  LeafTree made;
  InstancePtr last = made.root;
  for (std::size_t level = 0; level < s_depth; ++level) {
    const InstancePtr parent = last;
    for (std::size_t left = s_fanOut; left > 0; --left) {
      last = made.tree->AddChild(parent, made.product);
    }
  }
  made.leaves.push_back(last);
  return made;
}

Leaves Reverse(Leaves leaves)
{
  std::reverse(leaves.begin(), leaves.end());
  return leaves;
}

/// The same every time.
Leaves Shuffle(Leaves leaves)
{
  std::mt19937 random;
  for (std::size_t left = leaves.size(); left > 1; --left) {
    std::swap(leaves[left - 1], leaves[random() % left]);
  }
  return leaves;
}

void Switch(SceneInfoLog& log, const Leaves& leaves, guitree::ECompVisible visible)
{
  for (const InstancePtr& leaf : leaves) {
    log.SetVisible(leaf.Get(), visible, true);
  }
}

/// Shows all leaves and hides them again, one by one, each with the parents that follow.
double TimeSwitching(const LeafTree& tree, const Leaves& leaves)
{
  SceneInfoLog log(nullptr);
  const double showing = Time([&] { Switch(log, leaves, guitree::CompVisible); });
  Require(log.GetCompVisibleState(tree.root) == guitree::VisibleStateHiddenAllChildren, "all leaves are shown");
  const double hiding = Time([&] { Switch(log, leaves, guitree::CompHidden); });
  Require(log.GetVisibleMap().empty(), "nothing is shown any more");
  return showing + hiding;
}

/// The same, but no parent follows.
double TimeStoring(const Leaves& leaves)
{
  SceneInfoLog log(nullptr);
  const auto store = [&](guitree::VisibleState state) {
    return Time([&] {
      for (const InstancePtr& leaf : leaves) {
        log.SetVisible(leaf.Get(), state);
      }
    });
  };
  const double showing = store(guitree::VisibleStateVisible);
  Require(log.GetVisibleMap().size() == leaves.size(), "the state of each leaf is recorded");
  const double hiding = store(guitree::VisibleStateHidden);
  Require(log.GetVisibleMap().empty(), "no state is recorded any more");
  return showing + hiding;
}

Figures SwitchWide(std::size_t count, Leaves (*order)(Leaves))
{
  const LeafTree wide = MakeWide(count);
  const LeafTree spread = MakeSpread(count);
  const Leaves leaves = order(wide.leaves);
  return RunRounds(count, [&](Figures& figures) {
    const double seconds = TimeSwitching(wide, leaves);
    figures["x_spread"] = seconds / TimeSwitching(spread, spread.leaves);
    figures["x_store"] = seconds / TimeStoring(leaves);
    return seconds;
  });
}

Figures SwitchSubtree(std::size_t count)
{
  const LeafTree spread = MakeSpread(count);
  return RunRounds(count, [&](Figures& figures) {
    const double seconds = TimeSwitching(spread, spread.leaves);
    figures["x_store"] = seconds / TimeStoring(spread.leaves);
    return seconds;
  });
}

/// One leaf again and again: each event changes the states of all levels above it.
Figures SwitchDeepLeaf(std::size_t count)
{
  const LeafTree deep = MakeDeepLeaf();
  const Leaves again(count, deep.leaves.front());
  return RunRounds(count, [&](Figures& /*figures*/) {
    SceneInfoLog log(nullptr);
    const double seconds = Time([&] {
      for (const InstancePtr& leaf : again) {
        log.SetVisible(leaf.Get(), guitree::CompVisible, true);
        log.SetVisible(leaf.Get(), guitree::CompHidden, true);
      }
    });
    Require(log.GetVisibleMap().empty(), "the leaf is hidden at the end");
    log.SetVisible(deep.leaves.front().Get(), guitree::CompVisible, true);
    Require(log.GetVisibleMap().size() == s_depth + 1, "the leaf and all levels above it follow");
    return seconds;
  });
}

void RegisterOrder(const std::string& name, Leaves (*order)(Leaves))
{
  Register("Visibility/one_parent/" + name, {10'000, 100'000, 1'000'000},
           [=](std::size_t count) { return SwitchWide(count, order); });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  bench::Register("Visibility/deep_leaf", {10'000}, &bench::SwitchDeepLeaf);
  bench::Register("Visibility/subtree", {10'000, 100'000}, &bench::SwitchSubtree);
  bench::RegisterOrder("first_to_last", [](bench::Leaves leaves) { return leaves; });
  bench::RegisterOrder("last_to_first", &bench::Reverse);
  bench::RegisterOrder("random", &bench::Shuffle);
  return bench::RunAll(argc, argv);
}
