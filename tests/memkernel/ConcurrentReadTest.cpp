#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "memkernel/World.h"
#include "zelk/ObjectSelectionItem.h"

namespace memkerneltest {
namespace {

using memkernel::Instance;
using memkernel::World;

using InstancePtr = du::SmartPtr<Instance>;

/// Reads, as a filter on a worker does, whatever can be read while the owner edits.
class Reader {
public:
  Reader(World& world, memkernel::ShapeScene& scene)
      : m_tree(world.GetMemTree()), m_manager(world.GetMemSelectionManager()), m_scene(scene)
  {
  }

  void ReadOnce()
  {
    du::SmartPtr<zelk::BaseInstance> root;
    m_tree.GetBaseRoot(root);
    const dp::ReadGuard guard(m_tree.GetReadWriteLock());
    unsigned int expected = 0;
    m_tree.GetNumInstances(expected);
    std::set<du::SmartPtr<zelk::Instance>> selected;
    m_manager.GetSelectedInstances(0, selected, zelk::ExpandRuleInstances);
    unsigned int count = 0;
    _ReadBelow(root, count);
    isConsistent = isConsistent && count == expected;
    ++rounds;
  }

  std::atomic<bool> isConsistent{true};
  std::atomic<int> rounds{0};

private:
  void _ReadBelow(const du::SmartPtr<zelk::BaseInstance>& instance, unsigned int& count)
  {
    ++count;
    _Read(du::DynamicCast<zelk::Instance>(instance));
    du::SmartPtr<zelk::BaseInstance> child;
    for (instance->GetBaseFirstChild(child); child; child->GetBaseNextSibling(child)) {
      du::SmartPtr<zelk::BaseInstance> parent;
      child->GetBaseParent(parent);
      isConsistent = isConsistent && parent == instance;
      _ReadBelow(child, count);
    }
  }
  void _Read(const du::SmartPtr<zelk::Instance>& instance)
  {
    du::SmartPtr<zelk::PropertyValue> value;
    instance->GetPropertyValue(value, "Instance", "Display Name", {});
    std::string text;
    value->GetValueAsString(text);
    m_length += text.size() + instance->GetInstanceKey().GetView().size();
    instance->GetPropertyValue(value, "STEP", "Layer", "none");
    m_length +=
        instance->IsMultiInstancedSibling() && instance->GetFirstMultiInstancedSibling()->HasChildren() ? 1U : 0U;
    m_length += instance->Is3dSymbol() || instance->IsProxyExpanded() ? 1U : 0U;
    du::SmartPtr<zelk::BaseTree> tree;
    instance->GetBaseTree(tree);
    isConsistent = isConsistent && tree == &m_tree;
    du::SmartPtr<zelk::ShapeInstance> shapeInstance;
    if (m_scene.GetShapeInstance(instance, shapeInstance)) {
      du::SmartPtr<zelk::Instance> back;
      shapeInstance->GetInstance(back);
      m_length += shapeInstance->IsVisible() && shapeInstance->GetShapeDataStatus(1) == zelk::ShapeDataLoaded ? 1U : 0U;
    }
    m_length +=
        m_manager.ContainsItem(0, du::MakeSmart<zelk::ObjectSelectionItem>(instance), zelk::ExpandRuleNone) ? 1U : 0U;
  }

  memkernel::Tree& m_tree;
  memkernel::SelectionManager& m_manager;
  memkernel::ShapeScene& m_scene;
  std::size_t m_length = 0;
};

/// Makes one edit of each kind around a small tree, over and over.
class Editor {
public:
  Editor(World& world, memkernel::ShapeScene& scene)
      : m_tree(world.GetMemTree()), m_manager(world.GetMemSelectionManager()), m_scene(scene)
  {
    for (int i = 0; i < 3; ++i) {
      m_products.push_back(m_tree.CreateProduct({.name = "P", .shape = du::MakeSmart<memkernel::Shape>(nullptr)}));
    }
    m_root = m_tree.CreateRoot(m_tree.CreateProduct({.name = "R"}));
    m_part = m_tree.AddChild(m_root, m_products[0]);
  }

  void EditOnce(std::size_t round)
  {
    const auto& product = m_products[round % m_products.size()];
    const std::string number = std::to_string(round);
    const memkernel::TreeBatch batch(m_tree);
    const InstancePtr top = m_tree.AddChild(m_root, product);
    m_tree.AddChild(top, product);
    m_tree.InsertBefore(m_part, product);
    const auto shapeInstance = m_scene.CreateShapeInstance(top);
    m_manager.ApplyInstances(0, {top, m_part}, zelk::SelectionManager::OperationSet);
    m_tree.Rename(m_part, du::Symbol(std::string_view("Part " + number)));
    m_tree.SetProperty(m_part, "STEP", "Layer", du::Symbol(std::string_view(number)));
    m_tree.RenameProduct(product, du::Symbol(std::string_view("Product " + number)));
    m_tree.SetProductProperty(product, "STEP", "Layer", "common");
    m_tree.SetFlags(top, memkernel::Instance3dSymbol, round % 2 == 0);
    product->GetShape()->SetDataStatus(zelk::ShapeDataLoaded);
    m_scene.SetVisible(shapeInstance, false);
    if (round % 2 == 0) {
      m_tree.Remove(top);
    }
    if (round % 40 == 39) {
      _RemoveOthers();
    }
  }

private:
  void _RemoveOthers()
  {
    std::vector<du::SmartPtr<zelk::BaseInstance>> children;
    m_root->GetBaseChildren(children);
    for (const auto& child : children) {
      if (!(child == m_part)) {
        m_tree.Remove(du::DynamicCast<Instance>(child));
      }
    }
  }

  memkernel::Tree& m_tree;
  memkernel::SelectionManager& m_manager;
  memkernel::ShapeScene& m_scene;
  std::vector<du::SmartPtr<memkernel::Product>> m_products;
  InstancePtr m_root;
  InstancePtr m_part;
};

TEST(ConcurrentReading, UnderTheReadSideOfTheLock_SeesWholeTreesWhileTheOwnerEdits)
{
  constexpr std::size_t edits = 400;
  const auto world = du::MakeSmart<World>(1U);
  const auto scene = world->CreateShapeScene();
  Editor editor(*world, *scene);
  Reader reader(*world, *scene);
  std::atomic<bool> isDone{false};
  std::thread worker([&] {
    while (!isDone) {
      reader.ReadOnce();
    }
  });

  // At least so many edits, and until both have really met.
  for (std::size_t round = 0; round < edits || reader.rounds < 20; ++round) {
    editor.EditOnce(round);
  }
  isDone = true;
  worker.join();

  EXPECT_TRUE(reader.isConsistent);
  world->Shutdown();
}

TEST(ConcurrentReading, BySeveralReaders_EndsThoughTheOwnerGoesOnEditing)
{
  const auto world = du::MakeSmart<World>(1U);
  const auto scene = world->CreateShapeScene();
  Editor editor(*world, *scene);
  Reader first(*world, *scene);
  Reader second(*world, *scene);
  std::thread workers[] = {std::thread([&] {
                             for (int i = 0; i < 15; ++i) {
                               first.ReadOnce();
                             }
                           }),
                           std::thread([&] {
                             for (int i = 0; i < 15; ++i) {
                               second.ReadOnce();
                             }
                           })};

  for (std::size_t round = 0; first.rounds < 15 || second.rounds < 15; ++round) {
    editor.EditOnce(round);
  }
  for (std::thread& worker : workers) {
    worker.join();
  }

  EXPECT_TRUE(first.isConsistent);
  EXPECT_TRUE(second.isConsistent);
  world->Shutdown();
}

}  // namespace
}  // namespace memkerneltest
