#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

#include "FakeInstance.h"
#include "MemKernelUnderTest.h"

namespace contracttest {

using AnswerRevision = std::uint64_t (*)(const zelk::Instance& instance);

/// Stands for an instance of memkernel, but answers another revision. One that dies leaves its address to the next that
/// is made, whatever the allocator does with its memory.
template <AnswerRevision answer>
class RestampedInstance : public kerneltest::FakeInstance {
public:
  explicit RestampedInstance(const du::SmartPtr<zelk::Instance>& real) : m_real(real) {}

  [[nodiscard]] std::uint64_t GetChildListRevision() const override { return answer(*m_real); }
  [[nodiscard]] const du::SmartPtr<zelk::Instance>& GetReal() const { return m_real; }

  static void* operator new(std::size_t size)
  {
    Freed* const last = s_freed;
    if (!last) {
      return ::operator new(size);
    }
    s_freed = last->before;
    return last;
  }
  static void operator delete(void* memory) { s_freed = new (memory) Freed{s_freed}; }

private:
  struct Freed {
    Freed* before;
  };
  static inline Freed* s_freed = nullptr;

  const du::SmartPtr<zelk::Instance> m_real;
};

/// memkernel with other revisions.
template <AnswerRevision answer>
class WithRevisions : public MemKernelUnderTest {
public:
  du::SmartPtr<zelk::Instance> AddInstance(const du::SmartPtr<zelk::Instance>& parent, const std::string& product,
                                           const std::string& name) override
  {
    return du::MakeSmart<Restamped>(MemKernelUnderTest::AddInstance(_GetReal(parent), product, name));
  }
  void RemoveInstance(const du::SmartPtr<zelk::Instance>& instance) override
  {
    MemKernelUnderTest::RemoveInstance(_GetReal(instance));
  }
  bool RenameInstance(const du::SmartPtr<zelk::Instance>& instance, const std::string& name) override
  {
    return MemKernelUnderTest::RenameInstance(_GetReal(instance), name);
  }
  bool Set3dSymbol(const du::SmartPtr<zelk::Instance>& instance, bool on) override
  {
    return MemKernelUnderTest::Set3dSymbol(_GetReal(instance), on);
  }

private:
  using Restamped = RestampedInstance<answer>;

  [[nodiscard]] static du::SmartPtr<zelk::Instance> _GetReal(const du::SmartPtr<zelk::Instance>& instance)
  {
    return instance ? du::DynamicCast<Restamped>(instance)->GetReal() : du::SmartPtr<zelk::Instance>();
  }
};

inline std::uint64_t AnswerTheSame(const zelk::Instance& /*instance*/)
{
  return 1;
}

inline std::uint64_t AnswerTheNumberOfChildren(const zelk::Instance& instance)
{
  std::vector<du::SmartPtr<zelk::BaseInstance>> children;
  instance.GetBaseChildren(children);
  return children.size() + 1;
}

inline std::uint64_t AnswerTheNumberOfAllInstances(const zelk::Instance& instance)
{
  du::SmartPtr<zelk::BaseTree> tree;
  instance.GetBaseTree(tree);
  unsigned int count = 0;
  if (tree) {
    tree->GetNumInstances(count);
  }
  return count;
}

}  // namespace contracttest
