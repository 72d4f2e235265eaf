#include "WrongKernels.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <shared_mutex>

#include "MemKernelUnderTest.h"
#include "WrongRevisions.h"
#include "zelk/TreeObserver.h"

namespace contracttest {
namespace {

/// Forwards to another tree; its descendants spoil one operation each.
class ForwardingTree : public zelk::Tree {
public:
  explicit ForwardingTree(const du::SmartPtr<zelk::Tree>& tree) : m_tree(tree) {}

  void GetBaseRoot(du::SmartPtr<zelk::BaseInstance>& out) const override { m_tree->GetBaseRoot(out); }
  void GetRoot(du::SmartPtr<zelk::Instance>& out) const override { m_tree->GetRoot(out); }
  void GetNumInstances(unsigned int& out) const override { m_tree->GetNumInstances(out); }
  void Visit(zelk::BaseInstanceVisitor& visitor, VisitType type) const override { m_tree->Visit(visitor, type); }
  bool RegisterObserver(zelk::TreeObserver& observer, bool replay) override
  {
    return m_tree->RegisterObserver(observer, replay);
  }
  bool UnregisterObserver(zelk::BaseTreeObserver& observer) override { return m_tree->UnregisterObserver(observer); }
  dp::ReadWriteLock* GetReadWriteLock() const override { return m_tree->GetReadWriteLock(); }

protected:
  [[nodiscard]] zelk::Tree& _GetTree() const { return *m_tree; }

private:
  const du::SmartPtr<zelk::Tree> m_tree;
};

class MiscountingTree : public ForwardingTree {
public:
  using ForwardingTree::ForwardingTree;
  void GetNumInstances(unsigned int& out) const override
  {
    ForwardingTree::GetNumInstances(out);
    ++out;
  }
};

class BackwardVisitingTree : public ForwardingTree {
public:
  using ForwardingTree::ForwardingTree;
  void Visit(zelk::BaseInstanceVisitor& visitor, VisitType type) const override
  {
    class Collector : public zelk::BaseInstanceVisitor {
    public:
      bool VisitInstance(const du::SmartPtr<zelk::BaseInstance>& instance) override
      {
        instances.push_back(instance);
        return true;
      }
      std::vector<du::SmartPtr<zelk::BaseInstance>> instances;
    };
    Collector collector;
    ForwardingTree::Visit(collector, type);
    std::reverse(collector.instances.begin(), collector.instances.end());
    for (const auto& instance : collector.instances) {
      visitor.VisitInstance(instance);
    }
  }
};

class ForgetfulTree : public ForwardingTree {
public:
  using ForwardingTree::ForwardingTree;
  bool RegisterObserver(zelk::TreeObserver& observer, bool /*replay*/) override
  {
    return ForwardingTree::RegisterObserver(observer, false);
  }
};

/// Puts an observer of its own between the tree and each observer.
class InterposingTree : public ForwardingTree {
public:
  class Between : public zelk::TreeObserver {
  public:
    explicit Between(zelk::TreeObserver& receiver) : m_receiver(receiver) {}
    void OnBeginUpdate() override { m_receiver.OnBeginUpdate(); }
    void OnEndUpdate() override { m_receiver.OnEndUpdate(); }
    void OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                          const du::SmartPtr<zelk::BaseInstance>& parent, const du::Symbol& name) override
    {
      m_receiver.OnInstanceCreate(instance, parent, name);
    }
    void OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                          const du::SmartPtr<zelk::BaseInstance>& parent) override
    {
      m_receiver.OnInstanceRemove(instance, parent);
    }

  protected:
    [[nodiscard]] zelk::TreeObserver& _GetReceiver() const { return m_receiver; }

  private:
    zelk::TreeObserver& m_receiver;
  };

  using ForwardingTree::ForwardingTree;
  bool RegisterObserver(zelk::TreeObserver& observer, bool replay) override
  {
    const auto between = _MakeBetween(observer);
    m_betweens[&observer] = between;
    return ForwardingTree::RegisterObserver(*between, replay);
  }
  bool UnregisterObserver(zelk::BaseTreeObserver& observer) override
  {
    const auto between = m_betweens.extract(&observer);
    return !between.empty() && ForwardingTree::UnregisterObserver(*between.mapped());
  }

private:
  virtual du::SmartPtr<Between> _MakeBetween(zelk::TreeObserver& observer) = 0;

  std::map<const zelk::BaseTreeObserver*, du::SmartPtr<Between>> m_betweens;
};

class UnbracketedTree : public InterposingTree {
public:
  using InterposingTree::InterposingTree;

private:
  class WithoutBrackets : public Between {
  public:
    using Between::Between;
    void OnBeginUpdate() override {}
    void OnEndUpdate() override {}
  };
  du::SmartPtr<Between> _MakeBetween(zelk::TreeObserver& observer) override
  {
    return du::MakeSmart<WithoutBrackets>(observer);
  }
};

/// Tells of the descendants of what is removed before it tells of that itself.
class BottomUpTree : public InterposingTree {
public:
  using InterposingTree::InterposingTree;

private:
  class BottomUp : public Between {
  public:
    using Between::Between;
    void OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                          const du::SmartPtr<zelk::BaseInstance>& parent) override
    {
      m_removed.emplace_back(instance, parent);
    }
    void OnEndUpdate() override
    {
      for (auto removed = m_removed.rbegin(); removed != m_removed.rend(); ++removed) {
        _GetReceiver().OnInstanceRemove(removed->first, removed->second);
      }
      m_removed.clear();
      Between::OnEndUpdate();
    }

  private:
    std::vector<std::pair<du::SmartPtr<zelk::BaseInstance>, du::SmartPtr<zelk::BaseInstance>>> m_removed;
  };
  du::SmartPtr<Between> _MakeBetween(zelk::TreeObserver& observer) override
  {
    return du::MakeSmart<BottomUp>(observer);
  }
};

/// Holds the write side of its lock while an observer runs.
class LockHoldingTree : public InterposingTree {
public:
  using InterposingTree::InterposingTree;
  dp::ReadWriteLock* GetReadWriteLock() const override { return &m_lock; }

private:
  class Lock : public dp::ReadWriteLock {
  public:
    void ReadLock() override { mutex.lock_shared(); }
    void ReadUnlock() override { mutex.unlock_shared(); }
    std::shared_mutex mutex;
  };
  class Holding : public Between {
  public:
    Holding(zelk::TreeObserver& receiver, Lock& lock) : Between(receiver), m_lock(lock) {}
    void OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                          const du::SmartPtr<zelk::BaseInstance>& parent, const du::Symbol& name) override
    {
      const std::lock_guard guard(m_lock.mutex);
      Between::OnInstanceCreate(instance, parent, name);
    }

  private:
    Lock& m_lock;
  };
  du::SmartPtr<Between> _MakeBetween(zelk::TreeObserver& observer) override
  {
    return du::MakeSmart<Holding>(observer, m_lock);
  }

  mutable Lock m_lock;
};

template <typename WrongTree>
class WithTree : public MemKernelUnderTest {
public:
  WithTree() { GetWorld().tree = du::MakeSmart<WrongTree>(GetWorld().tree); }
};

/// Delivers at once, in the thread that posts.
class HastyQueue : public dom::MessageQueue {
public:
  bool Post(du::SmartPtr<dom::Observer> receiver, du::SmartPtr<dom::Message> message) override
  {
    receiver->HandleMessage(message);
    return true;
  }
  bool IsOwnerThread() const override { return true; }
};

class HastyKernel : public MemKernelUnderTest {
public:
  du::SmartPtr<dom::ManagedObject> CreateManagedObject() override
  {
    return du::MakeSmart<dom::ManagedObject>(du::MakeSmart<HastyQueue>());
  }
};

class LazyKernel : public MemKernelUnderTest {
public:
  void RemoveInstance(const du::SmartPtr<zelk::Instance>& /*instance*/) override {}
};

/// Runs each task at once, on the thread that inserts it.
class InlinePool : public du::TaskPool {
public:
  bool InsertTask(const du::SmartPtr<du::Task>& task) override
  {
    if (task) {
      task->Run();
      task->TaskComplete();
      task->FlushResults();
    }
    return true;
  }
};

class InlineWorld : public zelk::World {
public:
  du::TaskPool* GetTaskPool() const override { return &m_pool; }
  du::SmartPtr<zelk::ProgressController> GetProgressController() override { return {}; }
  du::SmartPtr<zelk::Preferences> GetPreferences() override { return {}; }

private:
  mutable InlinePool m_pool;
};

class WithInlinePool : public MemKernelUnderTest {
public:
  zelk::World& GetWorld() override { return *m_inlineWorld; }

private:
  const du::SmartPtr<InlineWorld> m_inlineWorld = du::MakeSmart<InlineWorld>();
};

/// Forwards to another manager, but replaces a set that it should add to.
class ReplacingManager : public zelk::SelectionManager {
public:
  explicit ReplacingManager(const du::SmartPtr<zelk::SelectionManager>& manager) : m_manager(manager) {}

  bool RegisterObserver(unsigned int list, const zelk::SelectionObserver& observer) override
  {
    return m_manager->RegisterObserver(list, observer);
  }
  bool UnregisterObserver(unsigned int list, const zelk::SelectionObserver& observer) override
  {
    return m_manager->UnregisterObserver(list, observer);
  }
  unsigned int ApplyItems(unsigned int list, const ItemSet& items, Operation operation) override
  {
    return m_manager->ApplyItems(list, items, operation);
  }
  bool ContainsItem(unsigned int list, du::SmartPtr<zelk::SelectionItem> item, zelk::ExpandRule rule) const override
  {
    return m_manager->ContainsItem(list, std::move(item), rule);
  }
  void GetSelectedInstances(unsigned int list, std::set<du::SmartPtr<zelk::Instance>>& out,
                            zelk::ExpandRule rule) const override
  {
    out.clear();
    m_manager->GetSelectedInstances(list, out, rule);
  }
  unsigned int GetSelectedCount(unsigned int list, const std::set<du::Symbol>& types,
                                zelk::ExpandRule rule) const override
  {
    return m_manager->GetSelectedCount(list, types, rule);
  }

private:
  const du::SmartPtr<zelk::SelectionManager> m_manager;
};

class WithReplacingManager : public MemKernelUnderTest {
public:
  WithReplacingManager() { GetWorld().selectionManager = du::MakeSmart<ReplacingManager>(GetWorld().selectionManager); }
};

template <typename T>
std::unique_ptr<kernelcontract::KernelUnderTest> Make()
{
  return std::make_unique<T>();
}

}  // namespace

const std::vector<WrongKernel>& GetWrongKernels()
{
  static const std::vector<WrongKernel> s_kernels{
      {"CountsOneTooMany", "Tree.Visit_DeliversEachInstanceOnceParentsFirst", &Make<WithTree<MiscountingTree>>},
      {"VisitsChildrenFirst", "Tree.Visit_DeliversEachInstanceOnceParentsFirst", &Make<WithTree<BackwardVisitingTree>>},
      {"IgnoresTheVisitorsAnswer", "Tree.Visit_EndsWhenTheVisitorSaysSo", &Make<WithTree<BackwardVisitingTree>>},
      {"RemovesNothing", "Tree.TheNumberOfInstances_FollowsEachEdit", &Make<LazyKernel>},
      {"NeverRaisesARevision", "ChildList.ARevision_IsRaisedByOneWithEachChildThatComes",
       &Make<WithRevisions<&AnswerTheSame>>},
      {"LowersTheRevisionForAChildThatGoes", "ChildList.ARevision_IsRaisedByMoreWithEachChildThatGoes",
       &Make<WithRevisions<&AnswerTheNumberOfChildren>>},
      {"KeepsTheRevisionForANew3dSymbol", "ChildList.ARevision_IsRaisedByMoreWhereAChildTurnsIntoA3dSymbolOrBack",
       &Make<WithRevisions<&AnswerTheNumberOfChildren>>},
      {"RaisesTheRevisionForGrandchildren", "ChildList.ARevision_StaysWhereTheListOfChildrenDoes",
       &Make<WithRevisions<&AnswerTheNumberOfAllInstances>>},
      {"BeginsEachRevisionAnew", "ChildList.ARevision_OfOneInstance_IsNeverThatOfAnotherAtItsAddress",
       &Make<WithRevisions<&AnswerTheNumberOfChildren>>},
      {"ReplaysNothing", "TreeObserver.WithReplay_TheObserverIsToldOfWhatExistsInBrackets",
       &Make<WithTree<ForgetfulTree>>},
      {"LeavesTheBracketsOut", "TreeObserver.ASingleEdit_IsToldInBrackets", &Make<WithTree<UnbracketedTree>>},
      {"TellsEditsAtTheEndOfTheBatch", "TreeObserver.ABatch_IsOneRunAndTellsEachEditBeforeTheNext",
       &Make<WithTree<BottomUpTree>>},
      {"TellsRemovalsBottomUp", "TreeObserver.ARemoval_IsToldWithItsSubtreeWholeAndThenEachDescendant",
       &Make<WithTree<BottomUpTree>>},
      {"DoesNotReportRegistrations", "TreeObserver.Registration_HappensOnceAndIsReportedToTheObserver",
       &Make<WithTree<UnbracketedTree>>},
      {"HoldsItsLockWhileObserversRun", "TreeObserver.NoLockIsHeldWhileAnObserverRuns",
       &Make<WithTree<LockHoldingTree>>},
      {"ReplacesTheSelectedInstances", "Selection.GetSelectedInstances_AddsToTheSet", &Make<WithReplacingManager>},
      {"RunsTasksOnTheOwnersThread", "TaskPool.Tasks_RunOnAWorkerInTheOrderOfInsertion", &Make<WithInlinePool>},
      {"AcceptsANullTask", "TaskPool.ANullTask_IsRefused", &Make<WithInlinePool>},
      {"CompletesInsideTheCall", "Event.ACompletion_IsNeverDeliveredInsideTheCallThatAskedForIt", &Make<HastyKernel>},
      {"LoadsInsideTheCall", "Loader.ALoad_CompletesWhateverComesOfIt", &Make<HastyKernel>},
  };
  return s_kernels;
}

}  // namespace contracttest
