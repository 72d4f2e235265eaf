#include "zelremote/StructureFilterInfo.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <variant>

#include "FakeInstance.h"
#include "zelk/World.h"

namespace {

class FakePreferences : public zelk::Preferences {
public:
  bool GetBool(const du::Symbol& key, bool& value, bool* found) const override { return _Get(key, value, found); }
  bool GetInt(const du::Symbol& key, int& value, bool* found) const override { return _Get(key, value, found); }
  bool GetString(const du::Symbol& key, std::string& value, bool* found) const override
  {
    return _Get(key, value, found);
  }
  void SetBool(const du::Symbol& key, bool value) override { m_values[key] = value; }
  void SetInt(const du::Symbol& key, int value) override { m_values[key] = value; }
  void SetString(const du::Symbol& key, const std::string& value) override { m_values[key] = value; }

private:
  template <typename T>
  bool _Get(const du::Symbol& key, T& value, bool* found) const
  {
    const auto entry = m_values.find(std::string(key));
    if (found) {
      *found = entry != m_values.end();
    }
    const T* stored = entry == m_values.end() ? nullptr : std::get_if<T>(&entry->second);
    if (stored) {
      value = *stored;
    }
    return stored != nullptr;
  }

  std::map<std::string, std::variant<bool, int, std::string>> m_values;
};

class FakeWorld : public zelk::World {
public:
  explicit FakeWorld(const du::SmartPtr<zelk::Preferences>& preferences) : m_preferences(preferences) {}
  du::TaskPool* GetTaskPool() const override { return nullptr; }
  du::SmartPtr<zelk::ProgressController> GetProgressController() override { return {}; }
  du::SmartPtr<zelk::Preferences> GetPreferences() override { return m_preferences; }

private:
  du::SmartPtr<zelk::Preferences> m_preferences;
};

class StructureFilterInfo : public testing::Test {
protected:
  StructureFilterInfo() { zelk::World::Install(du::MakeSmart<FakeWorld>(preferences)); }
  ~StructureFilterInfo() override { zelk::World::Install(nullptr); }

  du::SmartPtr<FakePreferences> preferences = du::MakeSmart<FakePreferences>();
  zelremote::StructureFilterInfo filter{du::Symbol("panel")};
};

TEST_F(StructureFilterInfo, ByDefault_FiltersNothing)
{
  const du::SmartPtr<zelk::BaseInstance> instance(new kerneltest::FakeInstance);
  std::set<du::SmartPtr<zelk::BaseInstance>> selected;
  du::SmartPtr<du::RefCounted> info;

  for (const bool flag : {false, true}) {
    EXPECT_FALSE(filter.IsFiltering(flag));
    EXPECT_FALSE(filter.IsFilteringBase(flag));
    EXPECT_FALSE(filter.IsHiddenFilter(flag));
    EXPECT_FALSE(filter.IsFilteredOut(instance, selected, flag, info, nullptr));
  }
  EXPECT_FALSE(filter.IsRootFilteredOut(instance));
  EXPECT_FALSE(filter.IsFilteringUsingView());
}

TEST_F(StructureFilterInfo, ByDefault_HasNoCriterion)
{
  EXPECT_FALSE(filter.GetFilteringName());
  EXPECT_FALSE(filter.GetFilteringParts());
  EXPECT_FALSE(filter.GetFilteringBodies());
  EXPECT_FALSE(filter.GetFilteringColumns());
  EXPECT_FALSE(filter.GetFilteringSel());
  EXPECT_FALSE(filter.GetFilteringVis());
  EXPECT_FALSE(filter.GetFilteringIssues());
  EXPECT_FALSE(filter.GetNotSyncPartsStatus());
  EXPECT_FALSE(filter.GetEnsureExpanded());
  EXPECT_FALSE(filter.GetShowSiblings());
  EXPECT_FALSE(filter.GetMatchCase());
  EXPECT_FALSE(filter.GetMatchWholeWord());
}

TEST_F(StructureFilterInfo, ByDefault_IsAnAscendingTreeWithoutASortColumn)
{
  EXPECT_TRUE(filter.GetName() == "panel");
  EXPECT_TRUE(filter.GetSortDirection());
  EXPECT_EQ(filter.GetSortColumn(), du::DualSymbol());
  EXPECT_NE(filter.listMode, 1);
  EXPECT_FALSE(filter.collapseInstances);
  EXPECT_FALSE(filter.hideBodies);
  EXPECT_FALSE(filter.useResultsList);
  EXPECT_FALSE(filter.resultsListLive);
}

TEST_F(StructureFilterInfo, CollapsingAndHiding_AnswerTheMembers)
{
  filter.collapseInstances = true;
  EXPECT_TRUE(filter.GetCollapseInstances());
  EXPECT_FALSE(filter.GetHideBodies());

  filter.hideBodies = true;
  EXPECT_TRUE(filter.GetHideBodies());
}

TEST_F(StructureFilterInfo, DynamicUpdate_IsWhatWasSet)
{
  EXPECT_TRUE(filter.HasDynamicUpdateOption());
  EXPECT_FALSE(filter.GetDynamicUpdate());

  filter.SetDynamicUpdate(true);

  EXPECT_TRUE(filter.GetDynamicUpdate());
}

TEST_F(StructureFilterInfo, ADuplicate_IsEqualAndIndependent)
{
  filter.listMode = 1;
  filter.hideBodies = true;
  filter.SetDynamicUpdate(true);

  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());
  filter.hideBodies = false;
  filter.SetDynamicUpdate(false);

  EXPECT_TRUE(duplicate->GetHideBodies());
  EXPECT_TRUE(duplicate->GetDynamicUpdate());
  EXPECT_EQ(dynamic_cast<zelremote::StructureFilterInfo&>(*duplicate).listMode, 1);
  EXPECT_TRUE(dynamic_cast<zelremote::StructureFilterInfo&>(*duplicate).GetName() == "panel");
}

TEST_F(StructureFilterInfo, LoadFromPreferences_ReadsEachMemberUnderTheNameOfTheFilter)
{
  preferences->SetInt("Structure Filter/panel/list_mode", 1);
  preferences->SetBool("Structure Filter/panel/collapse_instances", true);
  preferences->SetBool("Structure Filter/panel/hide_bodies", true);
  preferences->SetBool("Structure Filter/panel/use_results_list", true);
  preferences->SetBool("Structure Filter/panel/results_list_live", true);
  preferences->SetInt("Structure Filter/other/list_mode", 7);

  filter.LoadFromPreferences();

  EXPECT_EQ(filter.listMode, 1);
  EXPECT_TRUE(filter.collapseInstances);
  EXPECT_TRUE(filter.hideBodies);
  EXPECT_TRUE(filter.useResultsList);
  EXPECT_TRUE(filter.resultsListLive);
}

TEST_F(StructureFilterInfo, LoadFromPreferences_OverwritesWithAStoredFalse)
{
  filter.hideBodies = true;
  preferences->SetBool("Structure Filter/panel/hide_bodies", false);

  filter.LoadFromPreferences();

  EXPECT_FALSE(filter.hideBodies);
}

TEST_F(StructureFilterInfo, LoadFromPreferences_LeavesWhatIsNotStored_AndTakesTheDefaultForAnotherType)
{
  filter.listMode = 1;
  filter.hideBodies = true;
  filter.useResultsList = true;
  preferences->SetString("Structure Filter/panel/list_mode", "1");
  preferences->SetInt("Structure Filter/panel/hide_bodies", 1);

  filter.LoadFromPreferences();

  EXPECT_EQ(filter.listMode, 0);
  EXPECT_FALSE(filter.hideBodies);
  EXPECT_TRUE(filter.useResultsList);
}

TEST_F(StructureFilterInfo, LoadFromPreferences_WithoutAWorldOrPreferences_ChangesNothing)
{
  filter.listMode = 1;

  zelk::World::Install(du::MakeSmart<FakeWorld>(nullptr));
  filter.LoadFromPreferences();
  zelk::World::Install(nullptr);
  filter.LoadFromPreferences();

  EXPECT_EQ(filter.listMode, 1);
}

}  // namespace
