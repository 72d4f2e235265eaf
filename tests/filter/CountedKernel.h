#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "testsupport/PlainBaseInstance.h"
#include "zelk/BaseTree.h"

namespace filtertest {

class CountedKernel;

/// An instance that counts how often it is read. Its links belong to its kernel.
class CountedInstance : public testsupport::PlainBaseInstance {
public:
  CountedInstance(std::string_view name, CountedKernel& kernel) : PlainBaseInstance(name), m_kernel(kernel) {}

  std::vector<CountedInstance*> children;
  CountedInstance* parent = nullptr;

  [[nodiscard]] du::Symbol GetInstanceKey() const override;
  void GetPropertyValue(du::SmartPtr<zelk::PropertyValue>& out, const du::Symbol& group, const du::Symbol& name,
                        const du::Symbol& fallback) const override;
  void GetBaseChildren(std::vector<du::SmartPtr<zelk::BaseInstance>>& out) const override;
  void GetBaseParent(du::SmartPtr<zelk::BaseInstance>& out) const override;
  void GetBaseTree(du::SmartPtr<zelk::BaseTree>& out) const override;
  [[nodiscard]] bool HasChildren() const override;

private:
  CountedKernel& m_kernel;
};

/// A flat list of instances, so that any depth can be made and taken apart, and the lock of their tree. Outlives
/// whatever holds the instances.
class CountedKernel {
public:
  struct Reads {
    std::size_t keys = 0;
    std::size_t lists = 0;
    std::size_t parents = 0;
    std::size_t properties = 0;
    /// `HasChildren`, which a build asks each instance of the kernel once, right after it has made a node.
    std::size_t visits = 0;
  };

  /// The first one, without a parent, is the root.
  CountedInstance* Add(CountedInstance* parent, std::string_view name)
  {
    m_instances.push_back(du::MakeSmart<CountedInstance>(name, *this));
    CountedInstance* const added = m_instances.back().Get();
    if (parent) {
      parent->children.push_back(added);
      added->parent = parent;
    }
    return added;
  }
  [[nodiscard]] du::SmartPtr<zelk::BaseInstance> GetRoot() const { return m_instances.front(); }
  [[nodiscard]] const std::vector<du::SmartPtr<CountedInstance>>& GetInstances() const { return m_instances; }

  Reads reads;
  /// Runs inside each `HasChildren`, after it has been counted.
  std::function<void()> onVisit;
  /// Null for a kernel whose instances have no tree.
  du::SmartPtr<zelk::BaseTree> tree;

private:
  std::vector<du::SmartPtr<CountedInstance>> m_instances;
};

inline du::Symbol CountedInstance::GetInstanceKey() const
{
  ++m_kernel.reads.keys;
  return PlainBaseInstance::GetInstanceKey();
}

inline void CountedInstance::GetPropertyValue(du::SmartPtr<zelk::PropertyValue>& out, const du::Symbol& /*group*/,
                                              const du::Symbol& /*name*/, const du::Symbol& /*fallback*/) const
{
  ++m_kernel.reads.properties;
  out.Reset();
}

inline void CountedInstance::GetBaseChildren(std::vector<du::SmartPtr<zelk::BaseInstance>>& out) const
{
  ++m_kernel.reads.lists;
  out.clear();
  for (CountedInstance* const child : children) {
    out.emplace_back(child);
  }
}

inline void CountedInstance::GetBaseParent(du::SmartPtr<zelk::BaseInstance>& out) const
{
  ++m_kernel.reads.parents;
  out = du::SmartPtr<zelk::BaseInstance>(parent);
}

inline void CountedInstance::GetBaseTree(du::SmartPtr<zelk::BaseTree>& out) const
{
  out = m_kernel.tree;
}

inline bool CountedInstance::HasChildren() const
{
  ++m_kernel.reads.visits;
  if (m_kernel.onVisit) {
    m_kernel.onVisit();
  }
  return !children.empty();
}

/// A tree that says it has as many instances as it is told to, and a lock that keeps what is done with it.
class LoggedTree : public zelk::BaseTree, public dp::ReadWriteLock {
public:
  unsigned int count = 0;
  std::vector<std::string> log;
  std::function<void()> onUnlock;

  void GetBaseRoot(du::SmartPtr<zelk::BaseInstance>& out) const override { out.Reset(); }
  void GetNumInstances(unsigned int& out) const override { out = count; }
  void Visit(zelk::BaseInstanceVisitor& /*visitor*/, VisitType /*type*/) const override {}
  bool UnregisterObserver(zelk::BaseTreeObserver& /*observer*/) override { return false; }
  [[nodiscard]] dp::ReadWriteLock* GetReadWriteLock() const override { return const_cast<LoggedTree*>(this); }
  void ReadLock() override { log.emplace_back("lock"); }
  void ReadUnlock() override
  {
    log.emplace_back("unlock");
    if (onUnlock) {
      onUnlock();
    }
  }
};

}  // namespace filtertest
