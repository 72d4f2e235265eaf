#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "FilterRun.h"

namespace {

std::atomic<int> s_allocations{0};

void* CountAndAllocate(std::size_t size)
{
  ++s_allocations;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (!memory) {
    throw std::bad_alloc();
  }
  return memory;
}

}  // namespace

void* operator new(std::size_t size)
{
  return CountAndAllocate(size);
}
void* operator new[](std::size_t size)
{
  return CountAndAllocate(size);
}
void operator delete(void* memory) noexcept
{
  std::free(memory);
}
void operator delete[](void* memory) noexcept
{
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
  std::free(memory);
}

namespace {

using filtertest::FilterItem;
using zelremote::StructureFilterInfo;

class StructureFilterAllocation : public testing::Test {
protected:
  StructureFilterAllocation()
  {
    filter.SetColumns({du::DualSymbol("Data", "Material"), du::DualSymbol("Data", "none")});
    filter.SetText("nut *steel* \"m 8\"");
  }

  FilterItem* Add(const std::string& name, const std::string& material)
  {
    FilterItem* item = root->Add(name);
    item->SetProperty("Data", "Material", material);
    return item;
  }

  /// How often a duplicate allocates that judges all children of the root, in both passes, in their order.
  int CountAllocations(const StructureFilterInfo& original)
  {
    const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(StructureFilterInfo(original).Duplicate());
    du::SmartPtr<du::RefCounted> info = run.MakeInfo();
    unsigned int count = 0;
    const int before = s_allocations;
    for (const auto& child : root->children) {
      const du::SmartPtr<zelk::BaseInstance> instance = child;
      passing += duplicate->IsFilteredOut(instance, run.selected, true, info, &count) ? 0 : 1;
      passing += duplicate->IsFilteredOut(instance, run.selected, false, info, &count) ? 0 : 1;
    }
    return s_allocations - before;
  }

  filtertest::FilterRun run;
  filtertest::Item root = du::MakeSmart<FilterItem>("root");
  StructureFilterInfo filter{"panel"};
  int passing = 0;
};

TEST_F(StructureFilterAllocation, TheCounter_Counts)
{
  const int before = s_allocations;

  const auto memory = std::make_unique<std::string>(1000, 'x');

  EXPECT_GE(s_allocations - before, 2) << memory->size();
}

TEST_F(StructureFilterAllocation, TheFirstJudgingOfADuplicate_AllocatesNothing)
{
  Add("Hex nut M 8 with a name that is too long for any string to hold in itself", "Stainless steel, of some kind");

  EXPECT_EQ(CountAllocations(filter), 0);
  EXPECT_EQ(passing, 2);
}

TEST_F(StructureFilterAllocation, NamesOfEveryKind_AllocateNothing)
{
  for (int i = 0; i < 50; ++i) {
    Add(std::string(static_cast<std::size_t>(20 * i), 'n') + "nut m 8", "steel");
    Add("große Mutter, sehr viel länger als die kürzeste", "nichtrostender Stahl für Außenmaße");
    Add("\xff\xfe broken " + std::string(30, '\xc3'), "\xe4");
    // Each pair of bytes becomes three values.
    std::string accents;
    for (int k = 0; k < 10 * i; ++k) {
      accents += "\u0390";
    }
    Add(accents, accents);
  }

  EXPECT_EQ(CountAllocations(filter), 0);

  filter.SetMatchCase(true);
  filter.SetMatchWholeWord(true);
  EXPECT_EQ(CountAllocations(filter), 0);
}

TEST_F(StructureFilterAllocation, TheOtherCriteriaAndHiding_AllocateNothing)
{
  FilterItem* const item = Add("nut steel m 8", "brass");
  run.selected.insert(du::SmartPtr<zelk::BaseInstance>(item));
  run.results = run.selected;
  run.scene->Show(item, true);
  run.issues.issues[item] = structure_utils::TreeFilterAdditionalInfo::TreeFilterStatusLookup::TFStatusShapeFailed;
  filter.SetPartsOnly(true);
  filter.SetBodiesOnly(true);
  filter.SetSelectedOnly(true);
  filter.SetVisibility(StructureFilterInfo::Visibility::Visible);
  filter.SetIssuesOnly(true);
  filter.useResultsList = true;
  filter.hideBodies = true;
  filter.collapseInstances = true;

  EXPECT_EQ(CountAllocations(filter), 0);
  EXPECT_EQ(passing, 2);
}

TEST_F(StructureFilterAllocation, ALongerName_AllocatesOnceForAllThatAreNoLonger)
{
  filter.SetText("nut");
  filter.SetColumns({});
  const std::string longName(100000, 'x');
  Add(longName, "");
  const int forOne = CountAllocations(filter);
  for (int i = 0; i < 100; ++i) {
    Add(longName, "");
  }

  EXPECT_EQ(forOne, 1);
  EXPECT_EQ(CountAllocations(filter), 1);
}

TEST_F(StructureFilterAllocation, GrowingNames_AllocateButAFewTimes)
{
  filter.SetText("nut");
  filter.SetColumns({});
  std::string ascii(1000, 'x');
  std::string wide = "ä";
  for (int i = 0; i < 1000; ++i) {
    ascii += "0123456789";
    wide += "0123456789";
    Add(ascii, "");
    Add(wide, "");
  }

  // Each of the three buffers doubles.
  EXPECT_LE(CountAllocations(filter), 3 * 5);
}

TEST_F(StructureFilterAllocation, ADeepTree_AllocatesNothing)
{
  FilterItem* bottom = root.Get();
  for (int i = 0; i < 5000; ++i) {
    bottom = bottom->Add("nut");
  }
  filter.hideBodies = true;
  root->children.front()->Add("nut steel m 8");
  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());
  du::SmartPtr<du::RefCounted> info;
  const du::SmartPtr<zelk::BaseInstance> instance(bottom);
  const int before = s_allocations;

  const bool isOut = duplicate->IsFilteredOut(instance, run.selected, true, info, nullptr);

  EXPECT_EQ(s_allocations - before, 0);
  EXPECT_FALSE(isOut);
}

}  // namespace
