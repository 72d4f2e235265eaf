#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <list>
#include <string>
#include <vector>

#include "TestInstance.h"
#include "TextOf.h"
#include "hostcheck/ProtocolChecker.h"

namespace {

using hosttest::Instance;
using hosttest::TestInstance;

/// The rows as they are described: a tree of nested lists, searched from the top for everything.
class Model {
public:
  void Create(const TestInstance& instance)
  {
    Branch* place = nullptr;
    for (const TestInstance* above = instance.parent; above && !place; above = above->parent) {
      place = _Find(m_top, *above);
    }
    place = place ? place : &m_top;
    const auto& beside = place->children;
    const bool isThere =
        std::any_of(beside.begin(), beside.end(), [&](const Branch& branch) { return branch.instance == &instance; });
    if (isThere) {
      return;
    }
    Branch branch = _Take(m_top, instance);
    branch.instance = &instance;
    place->children.push_back(std::move(branch));
  }

  void Remove(const TestInstance& instance) { static_cast<void>(_Take(m_top, instance)); }
  void Clear() { m_top.children.clear(); }

  [[nodiscard]] std::string GetText() const
  {
    std::string text;
    for (const Branch& branch : m_top.children) {
      text += std::string(branch.instance->objectName) + '\n' + _GetTextBelow(branch, "");
    }
    return text;
  }

private:
  struct Branch {
    const TestInstance* instance = nullptr;
    std::list<Branch> children;
  };

  static Branch* _Find(Branch& branch, const TestInstance& instance)
  {
    if (branch.instance == &instance) {
      return &branch;
    }
    for (Branch& child : branch.children) {
      if (Branch* found = _Find(child, instance)) {
        return found;
      }
    }
    return nullptr;
  }

  static Branch _Take(Branch& branch, const TestInstance& instance)
  {
    for (auto child = branch.children.begin(); child != branch.children.end(); ++child) {
      if (child->instance == &instance) {
        Branch taken = std::move(*child);
        branch.children.erase(child);
        return taken;
      }
      Branch taken = _Take(*child, instance);
      if (taken.instance) {
        return taken;
      }
    }
    return {};
  }

  static std::string _GetTextBelow(const Branch& branch, const std::string& indent)
  {
    std::string text;
    for (const Branch& child : branch.children) {
      const bool isLast = &child == &branch.children.back();
      text += indent + (isLast ? "`- " : "|- ") + std::string(child.instance->objectName) + '\n'
              + _GetTextBelow(child, indent + (isLast ? "   " : "|  "));
    }
    return text;
  }

  Branch m_top;
};

/// A tree whose instances each lie under an earlier one.
std::vector<Instance> MakeTree()
{
  std::vector<Instance> instances{hosttest::Make("0")};
  const auto count = *rc::gen::inRange<std::size_t>(2, 20);
  for (std::size_t number = 1; number < count; ++number) {
    const auto parent = *rc::gen::inRange<std::size_t>(0, number);
    instances.push_back(hosttest::Make(std::to_string(number), instances[parent]));
  }
  return instances;
}

RC_GTEST_PROP(TextHostProperty, RowsAfterAnyEdits_AreThoseOfTheModel, ())
{
  const std::vector<Instance> instances = MakeTree();
  texthost::TextHost host;
  Model model;

  const auto edits = *rc::gen::inRange(1, 60);
  for (int edit = 0; edit < edits; ++edit) {
    const Instance& instance = instances[*rc::gen::inRange<std::size_t>(0, instances.size())];
    switch (*rc::gen::weightedElement<int>({{12, 0}, {4, 1}, {1, 2}, {2, 3}, {2, 4}})) {
      case 0:
        hosttest::Create(host, instance);
        model.Create(*instance);
        break;
      case 1:
        host.InstanceRemove(instance, du::SmartPtr<zelk::BaseInstance>(instance->parent), false);
        model.Remove(*instance);
        break;
      case 2:
        host.ClearTree();
        model.Clear();
        break;
      case 3:
        host.StartTreeUpdate();
        break;
      default:
        host.FinishTreeUpdate();
        break;
    }
    RC_ASSERT(hosttest::TextOf(host, {.ascii = true}) == model.GetText());
  }
}

RC_GTEST_PROP(ProtocolCheckerProperty, PopulationInTheTreesOrderWithAnyHiddenInstances_IsNoViolation, ())
{
  const std::vector<Instance> instances = MakeTree();
  hostcheck::ProtocolChecker checker;
  checker.StoreExpandedAndFirstVisibleBeforePopulate(false);
  checker.StartTreeUpdate();
  checker.ClearTree();

  std::size_t shown = 0;
  for (const Instance& instance : instances) {
    if (*rc::gen::arbitrary<bool>()) {
      hosttest::Create(checker, instance);
      ++shown;
    }
  }
  checker.FinishTreeUpdate();
  checker.CheckAtRest();

  RC_ASSERT(checker.GetViolations() == std::vector<std::string>{});
  RC_ASSERT(checker.GetRowCount() == shown);
}

RC_GTEST_PROP(ProtocolCheckerProperty, RowAfterOneBelowIt_IsAlwaysFound, ())
{
  const std::vector<Instance> instances = MakeTree();
  const Instance& below = instances[*rc::gen::inRange<std::size_t>(1, instances.size())];
  std::vector<TestInstance*> above;
  for (TestInstance* parent = below->parent; parent; parent = parent->parent) {
    above.push_back(parent);
  }
  hostcheck::ProtocolChecker checker;
  checker.StartTreeUpdate();
  hosttest::Create(checker, below);

  hosttest::Create(checker, Instance(*rc::gen::elementOf(above)));

  RC_ASSERT(checker.GetViolationCount() == 1U);
}

}  // namespace
