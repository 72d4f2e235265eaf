#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "FilterRun.h"

namespace {

using filtertest::FilterItem;
using filtertest::GetPassing;
using Names = std::vector<std::string>;

class StructureFilterThread : public testing::Test {
protected:
  StructureFilterThread()
  {
    for (int i = 0; i < 200; ++i) {
      root->Add("nut " + std::to_string(i))->SetProperty("Data", "Material", "Stahl für Außenmaße");
      root->AddBody("Körper " + std::to_string(i));
    }
    filter.SetText("\"für außenmasse\" nut");
    filter.SetColumns({du::DualSymbol("Data", "Material")});
    filter.SetSortColumn(du::DualSymbol("Data", "Material"));
    filter.hideBodies = true;
  }

  /// All that an owner can edit, to and fro.
  void Edit(int round)
  {
    const bool flag = round % 2 == 0;
    filter.SetText(flag ? "ein ganz anderer, sehr viel längerer Text" : "x");
    filter.SetMatchCase(flag);
    filter.SetMatchWholeWord(flag);
    filter.SetColumns(flag ? std::vector<du::DualSymbol>{} : std::vector<du::DualSymbol>(9));
    filter.SetSearchName(flag);
    filter.SetPartsOnly(flag);
    filter.SetBodiesOnly(flag);
    filter.SetSelectedOnly(flag);
    filter.SetIssuesOnly(flag);
    filter.SetSortColumn({});
    filter.hideBodies = flag;
    filter.collapseInstances = flag;
    filter.useResultsList = flag;
    filter.listMode = round;
    filter.SetDynamicUpdate(flag);
    if (round % 10 == 0) {
      filter.ClearCriteria();
    }
  }

  filtertest::FilterRun run;
  filtertest::Item root = du::MakeSmart<FilterItem>("root");
  zelremote::StructureFilterInfo filter{"panel"};
};

TEST_F(StructureFilterThread, ADuplicate_IsUsedElsewhereWhileTheOwnerEditsTheOriginal)
{
  std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());
  const Names expected = GetPassing(run, filter, root.Get());
  ASSERT_EQ(expected.size(), 200U);
  std::atomic<bool> isDone{false};
  std::vector<Names> results;

  std::thread worker([&] {
    for (int i = 0; i < 20; ++i) {
      results.push_back(GetPassing(run, *duplicate, root.Get()));
      static_cast<void>(duplicate->GetSortColumn());
    }
    duplicate.reset();
    isDone = true;
  });
  for (int round = 0; !isDone; ++round) {
    Edit(round);
  }
  worker.join();

  for (const Names& names : results) {
    EXPECT_EQ(names, expected);
  }
}

TEST_F(StructureFilterThread, SeveralDuplicates_JudgeAtTheSameTime)
{
  const Names expected = GetPassing(run, filter, root.Get());
  // Each counts the questions for parents, so each has a tree of its own.
  std::vector<filtertest::Item> roots;
  std::vector<std::unique_ptr<structure_utils::TreeFilterInfoBase>> duplicates;
  for (int i = 0; i < 4; ++i) {
    roots.push_back(du::MakeSmart<FilterItem>("root"));
    for (const auto& child : root->children) {
      FilterItem* copy = roots.back()->Add(std::string(child->name));
      copy->isBody = child->isBody;
      copy->properties = child->properties;
    }
    duplicates.emplace_back(filter.Duplicate());
  }
  std::vector<Names> results(roots.size());
  std::vector<std::thread> workers;
  for (std::size_t i = 0; i < roots.size(); ++i) {
    workers.emplace_back([&, i] {
      filtertest::FilterRun own;
      results[i] = GetPassing(own, *duplicates[i], roots[i].Get());
    });
  }
  for (std::thread& worker : workers) {
    worker.join();
  }

  for (const Names& names : results) {
    EXPECT_EQ(names, expected);
  }
}

TEST_F(StructureFilterThread, ALookUp_MayBeDetachedWhileOthersAsk)
{
  FilterItem* const item = root->children.front().Get();
  run.issues.issues[item] = structure_utils::TreeFilterAdditionalInfo::TreeFilterStatusLookup::TFStatusShapeFailed;
  const auto info = du::DynamicCast<structure_utils::TreeFilterAdditionalInfo>(run.MakeInfo());
  std::atomic<int> asked{0};
  std::atomic<bool> isDetached{false};
  std::vector<std::thread> workers;
  for (int i = 0; i < 3; ++i) {
    workers.emplace_back([&] {
      while (!isDetached) {
        static_cast<void>(info->GetItemStatus(du::ConstSmartPtr<zelk::Instance>(item)));
        ++asked;
      }
      EXPECT_EQ(info->GetItemStatus(du::ConstSmartPtr<zelk::Instance>(item)),
                structure_utils::TreeFilterAdditionalInfo::TreeFilterStatusLookup::TFStatusNone);
    });
  }
  while (asked < 100) {
    std::this_thread::yield();
  }

  info->DetachStatusLookup();
  run.issues.issues.clear();
  isDetached = true;

  for (std::thread& worker : workers) {
    worker.join();
  }
}

}  // namespace
