#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <vector>

#include "JobStage.h"

namespace {

using filtertest::JobStage;
using filtertest::Show;
using guitree::GenerateFilteredTreeTask;

/// A filter whose duplicates belong to it: who deletes one is only counted, so that several tasks may share one.
class LendingFilter : public testsupport::ScriptedFilter {
public:
  class Lent : public ScriptedFilter {
  public:
    Lent(const ScriptedFilter& original, int& deletions) : ScriptedFilter(original), m_deletions(deletions) {}

    // Made by the global one.
    static void operator delete(Lent* lent, std::destroying_delete_t /*tag*/) { ++lent->m_deletions; }
    struct TakeBack {
      void operator()(Lent* lent) const
      {
        std::destroy_at(lent);
        ::operator delete(lent);
      }
    };

  private:
    int& m_deletions;
  };

  int deletions = 0;

  [[nodiscard]] TreeFilterInfoBase* Duplicate() override
  {
    return m_lent.emplace_back(::new Lent(*this, deletions)).get();
  }

private:
  std::vector<std::unique_ptr<Lent, Lent::TakeBack>> m_lent;
};

class OpenTask : public GenerateFilteredTreeTask {
public:
  using GenerateFilteredTreeTask::_GetNotFilteredInsts;
  using GenerateFilteredTreeTask::GenerateFilteredTreeTask;
};

TEST(TaskCopy, SharesEverythingAndDeletesTheSameFilter)
{
  JobStage stage;
  LendingFilter filter;
  filter.filtersOut = [](const auto& instance, bool) { return instance->GetObjectName() != "b"; };
  const std::list<zelk::BaseInstance*> spared{stage.kernel["d"].Get()};
  {
    const auto task = du::MakeSmart<OpenTask>(stage.state.Get(), filter, nullptr, nullptr, stage.kernel.Get(), &spared,
                                              nullptr, false, nullptr);

    const auto copy = du::MakeSmart<OpenTask>(*task);

    EXPECT_EQ(copy->GetFilteredTreeResult(), task->GetFilteredTreeResult());
    EXPECT_EQ(copy->GetBaseTree(), stage.kernel.Get());
    EXPECT_EQ(copy->GetGuiInterface(), &stage.host);
    EXPECT_EQ(copy->_GetNotFilteredInsts(), task->_GetNotFilteredInsts());
    copy->Run();
    EXPECT_EQ(Show(task->GetFilteredTreeResult()), "root[a[b] d]");
    EXPECT_EQ(filter.deletions, 0);
  }

  EXPECT_EQ(filter.deletions, 2);
}

TEST(TaskCopy, AnAssignmentReplacesEverythingAndForgetsTheFormerFilter)
{
  JobStage stage;
  const testsupport::NamedTree other("other");
  LendingFilter filter;
  LendingFilter formerFilter;
  const std::list<zelk::BaseInstance*> spared{stage.kernel["d"].Get()};
  {
    const auto task = du::MakeSmart<OpenTask>(stage.state.Get(), filter, nullptr, nullptr, stage.kernel.Get(), &spared,
                                              nullptr, false, nullptr);
    const auto assigned =
        du::MakeSmart<OpenTask>(nullptr, formerFilter, nullptr, nullptr, other.Get(), nullptr, nullptr, true, nullptr);

    *assigned = *task;

    EXPECT_EQ(assigned->GetFilteredTreeResult(), task->GetFilteredTreeResult());
    EXPECT_EQ(assigned->GetBaseTree(), stage.kernel.Get());
    EXPECT_EQ(assigned->GetGuiInterface(), &stage.host);
    EXPECT_EQ(assigned->_GetNotFilteredInsts(), task->_GetNotFilteredInsts());
  }

  EXPECT_EQ(filter.deletions, 2);
  EXPECT_EQ(formerFilter.deletions, 0);
}

}  // namespace
