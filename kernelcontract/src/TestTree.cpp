#include "TestTree.h"

#include <chrono>
#include <thread>

namespace kernelcontract {
namespace {

class Collector : public zelk::BaseInstanceVisitor {
public:
  bool VisitInstance(const du::SmartPtr<zelk::BaseInstance>& instance) override
  {
    instances.push_back(instance);
    return true;
  }

  std::vector<du::SmartPtr<zelk::BaseInstance>> instances;
};

}  // namespace

TestTree::TestTree(KernelUnderTest& kernel)
{
  const auto root = _Add(kernel, nullptr, "engine", "root");
  const auto a = _Add(kernel, root, "block", "a");
  _Add(kernel, a, "pin", "a1");
  const auto a2 = _Add(kernel, a, "cover", "a2");
  _Add(kernel, a2, "seal", "x");
  _Add(kernel, root, "bolt", "b");
  _Add(kernel, root, "bolt", "c");
  _Add(kernel, root, "pump", "d");
}

Names TestTree::GetNames() const
{
  Names names;
  for (const auto& [name, instance] : m_instances) {
    names[instance.Get()] = name;
  }
  return names;
}

du::SmartPtr<zelk::Instance> TestTree::_Add(KernelUnderTest& kernel, const du::SmartPtr<zelk::Instance>& parent,
                                            const std::string& product, const std::string& name)
{
  return m_instances[name] = kernel.AddInstance(parent, product, name);
}

std::vector<du::SmartPtr<zelk::BaseInstance>> Visit(const zelk::BaseTree& tree)
{
  Collector collector;
  tree.Visit(collector, zelk::BaseTree::VisitParentsFirst);
  return collector.instances;
}

bool RunUntil(KernelUnderTest& kernel, const std::function<bool()>& isDone)
{
  const auto giveUp = std::chrono::system_clock::now() + std::chrono::minutes(1);
  kernel.RunLoop();
  while (!isDone()) {
    if (std::chrono::system_clock::now() > giveUp) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    kernel.RunLoop();
  }
  return true;
}

}  // namespace kernelcontract
