#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <vector>

#include "EngineStage.h"
#include "FilterModel.h"

namespace filtertest {
namespace {

using Chosen = std::set<const zelk::BaseInstance*>;

/// One of the items, by a random number: a case that is played again while it is made smaller has other objects.
template <typename Item>
const Item& PickFrom(const std::vector<Item>& items)
{
  return items[*rc::gen::inRange<std::size_t>(0, items.size()) % items.size()];
}

/// A random kernel tree with a filter that judges by random sets of instances.
class RandomRun {
public:
  RandomRun()
  {
    _MakeTree();
    filter.filtersOut = [this](const Instance& instance, bool hiddenPass) {
      return (hiddenPass ? m_hidden : m_rejected).contains(instance.Get());
    };
    filter.filtersOutAtRoot = [this](const Instance& instance) { return m_rejectedAtRoot.contains(instance.Get()); };
    filter.onAsked = [](const Instance&, std::set<Instance>&, bool, du::SmartPtr<du::RefCounted>&,
                        unsigned int* count) { ++*count; };
    filter.showSiblings = *rc::gen::arbitrary<bool>();
    filter.hideBodies = *rc::gen::arbitrary<bool>();
    filter.hasHiddenPass = *rc::gen::arbitrary<bool>();
    filter.isHiddenPassAll = *rc::gen::inRange(0, 4) == 0;
    filter.sortAscending = *rc::gen::arbitrary<bool>();
    filter.sortColumn = PickFrom(std::vector<du::DualSymbol>{{"", ""}, {"", "Mass"}, {"Physical", ""}});
    m_rejected = _Choose({0, 50, 90, 100});
    m_hidden = _Choose({0, 10, 50});
    m_rejectedAtRoot = _Choose({0, 50});
    for (const zelk::BaseInstance* const instance : _Choose({0, 0, 20})) {
      spared.insert(const_cast<zelk::BaseInstance*>(instance));
    }
    tree->isForced = *rc::gen::inRange(0, 4) != 0;
  }
  RandomRun(const RandomRun&) = delete;
  RandomRun& operator=(const RandomRun&) = delete;

  /// The root as a rule, at times an instance below it.
  [[nodiscard]] Instance PickTop() const
  {
    return *rc::gen::inRange(0, 4) == 0 ? Instance(PickFrom(m_instances)) : Instance(m_instances.front());
  }
  void Build(const Instance& top, zelk::AsyncEvent* event = nullptr)
  {
    du::SmartPtr<du::RefCounted> none;
    tree->BuildTree(filter, top, nullptr, none, spared, event);
  }
  [[nodiscard]] FilterModel MakeModel() { return {filter, spared, tree->isForced}; }

  testsupport::ScriptedFilter filter;
  std::set<zelk::BaseInstance*> spared;
  du::SmartPtr<OpenTree> tree = du::MakeSmart<OpenTree>();

private:
  void _MakeTree()
  {
    const std::vector<const char*> values{"", "1", "10", "9", "a", "B"};
    std::vector<du::SmartPtr<memkernel::Product>> products;
    for (const unsigned int flags : {0U, 0U, unsigned{memkernel::InstanceBody}}) {
      products.push_back(m_kernel->CreateProduct({.name = "product", .flags = flags}));
    }
    const int size = *rc::gen::inRange(1, 40);
    for (int number = 0; number < size; ++number) {
      const auto product = PickFrom(products);
      const du::Symbol name(std::string_view("n" + std::to_string(number)));
      m_instances.push_back(number == 0 ? m_kernel->CreateRoot(product, name)
                                        : m_kernel->AddChild(PickFrom(m_instances), product, name));
      if (*rc::gen::inRange(0, 3) != 0) {
        m_kernel->SetProperty(m_instances.back(), "", "Mass", PickFrom(values));
        m_kernel->SetProperty(m_instances.back(), "Physical", "", PickFrom(values));
      }
    }
  }
  /// So many in a hundred, of which one number holds for the whole of the tree.
  [[nodiscard]] Chosen _Choose(const std::vector<int>& shares) const
  {
    const int share = PickFrom(shares);
    Chosen chosen;
    for (const auto& instance : m_instances) {
      if (*rc::gen::inRange(0, 100) < share) {
        chosen.insert(instance.Get());
      }
    }
    return chosen;
  }

  du::SmartPtr<memkernel::Tree> m_kernel = du::MakeSmart<memkernel::Tree>();
  std::vector<du::SmartPtr<memkernel::Instance>> m_instances;
  Chosen m_rejected;
  Chosen m_hidden;
  Chosen m_rejectedAtRoot;
};

std::string ShowRow(const FilterModel::Row& row)
{
  std::string text = NameOf(row.instance);
  for (const FilterModel::Row& child : row.rows) {
    text += (&child == &row.rows.front() ? "[" : " ") + ShowRow(child);
  }
  return row.rows.empty() ? text : text + "]";
}

std::size_t CountRows(const FilterModel::Row& row)
{
  std::size_t count = 1;
  for (const FilterModel::Row& child : row.rows) {
    count += CountRows(child);
  }
  return count;
}

void Compare(OpenTree& tree, const FilterModel& model)
{
  RC_ASSERT(Show(tree.root) == ShowRow(model.tree));
  RC_ASSERT((tree.hfRoot != nullptr) == (model.hiddenTree.instance != nullptr));
  if (tree.hfRoot) {
    RC_ASSERT(Show(tree.hfRoot) == ShowRow(model.hiddenTree));
  }
  RC_ASSERT(MatchedOf(tree) == NamesOf(model.matched));
  RC_ASSERT(tree.GetNumMatchedItems() == model.matched.size());
  RC_ASSERT(CreatedOf(tree) == NamesOf(model.created));
  const Node* const first = tree.GetFirstFilteredNode();
  RC_ASSERT((first ? first->instance : nullptr) == model.first);
  // A node of the tree, not of another one with the same instances.
  const Node* const inTree = first ? Find(tree.root, NameOf(first->instance)) : nullptr;
  RC_ASSERT(first == inTree);
  ExpectLinked(tree.root);
  RC_ASSERT(!testing::Test::HasFailure());
}

void CollectInstances(const Node* node, std::vector<zelk::BaseInstance*>& out)
{
  if (node->instance && (!node->lastChild || node->lastChild->instance)) {
    out.push_back(node->instance);
  }
  for (const Node* child = node->firstChild; child; child = child->nextSibling) {
    CollectInstances(child, out);
  }
}

Names NamesOfAll(const std::vector<zelk::BaseInstance*>& instances)
{
  Names names;
  std::transform(instances.begin(), instances.end(), std::back_inserter(names), NameOf);
  return names;
}

/// Fills random branches of both trees until some have been filled.
void ExpandAtRandom(OpenTree& tree, FilterModel& model)
{
  const int branches = *rc::gen::inRange(1, 6);
  for (int branch = 0; branch < branches; ++branch) {
    std::vector<zelk::BaseInstance*> filled;
    CollectInstances(tree.root, filled);
    if (filled.empty()) {
      return;
    }
    zelk::BaseInstance* const parent = PickFrom(filled);
    std::list<Node*> created;
    model.AddPlaceholder(parent);

    tree.ExpandNode(OpenTree::AddPlaceholder(Find(tree.root, NameOf(parent))), &created);

    std::vector<zelk::BaseInstance*> made;
    std::transform(created.begin(), created.end(), std::back_inserter(made),
                   [](const Node* node) { return node->instance; });
    RC_ASSERT(NamesOfAll(made) == NamesOfAll(model.Expand(parent)));
    Compare(tree, model);
  }
}

RC_GTEST_PROP(FilterProperty, BuiltTree_IsThatOfThePlainModel, ())
{
  RandomRun run;
  FilterModel model = run.MakeModel();
  const Instance top = run.PickTop();

  run.Build(top);
  model.Build(top);

  Compare(*run.tree, model);
  if (run.tree->isForced) {
    RC_ASSERT(run.tree->GetNumInsts() == (run.tree->rootIsHfTree ? 0 : model.asks));
  }
  const FilterModel::Row& hidden = run.tree->rootIsHfTree ? model.tree : model.hiddenTree;
  RC_ASSERT(run.tree->GetNumHfInsts() == (run.filter.hasHiddenPass ? CountRows(hidden) : 0));
}

RC_GTEST_PROP(FilterProperty, FilledTree_IsThatOfThePlainModel, ())
{
  RandomRun run;
  FilterModel model = run.MakeModel();
  const Instance top = run.PickTop();
  run.Build(top);
  model.Build(top);

  ExpandAtRandom(*run.tree, model);
}

RC_GTEST_PROP(FilterProperty, TreeOfACancelledRun_FillsToTheKernels, ())
{
  RandomRun run;
  FilterModel model = run.MakeModel();
  const Instance top = run.PickTop();
  const auto event = du::MakeSmart<ReportedEvent>();
  event->Cancel();
  run.Build(top, event.Get());
  model.Cancel(top);
  Compare(*run.tree, model);
  std::list<Node*> created;

  run.tree->ExpandNode(run.tree->root->lastChild, &created);
  static_cast<void>(model.Expand(top.Get()));

  Compare(*run.tree, model);
  ExpandAtRandom(*run.tree, model);
}

RC_GTEST_PROP(FilterProperty, OneObjectBuiltTwice_HasTheSecondTreeAndBothSets, ())
{
  RandomRun run;
  FilterModel model = run.MakeModel();
  for (int build = 0; build < 2; ++build) {
    run.filter.showSiblings = *rc::gen::arbitrary<bool>();
    run.filter.hasHiddenPass = *rc::gen::arbitrary<bool>();
    const Instance top = run.PickTop();

    run.Build(top);
    model.Build(top);

    Compare(*run.tree, model);
  }
}

}  // namespace
}  // namespace filtertest
