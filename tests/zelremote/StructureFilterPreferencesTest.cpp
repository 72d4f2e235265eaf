#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "FakePreferences.h"
#include "dp/ZelTracer.h"
#include "testsupport/PlainWorld.h"
#include "zelremote/StructureFilterInfo.h"

namespace {

using filtertest::FakePreferences;
using Filter = zelremote::StructureFilterInfo;
using Visibility = Filter::Visibility;
using Columns = std::vector<du::DualSymbol>;

const std::vector<std::string>& GetFlagKeys()
{
  static const std::vector<std::string> s_keys{
      "search_name",        "match_case",    "match_whole_word", "parts_only",        "bodies_only",
      "selected_only",      "issues_only",   "use_results_list", "results_list_live", "hide_bodies",
      "collapse_instances", "show_siblings", "ensure_expanded",  "sort_ascending",    "dynamic_update"};
  return s_keys;
}

/// Every setting as text, told through the getters alone.
std::string Describe(Filter& filter)
{
  std::string text = "text=" + filter.GetText();
  const auto addFlag = [&](const char* name, bool value) { text += std::string(" ") + name + (value ? "=1" : "=0"); };
  const auto addColumn = [&](const du::DualSymbol& column) {
    text += " (" + std::string(column.GetFirst()) + ")(" + std::string(column.GetSecond()) + ")";
  };
  addFlag("search_name", filter.GetSearchName());
  for (const du::DualSymbol& column : filter.GetColumns()) {
    addColumn(column);
  }
  addFlag("match_case", filter.GetMatchCase());
  addFlag("match_whole_word", filter.GetMatchWholeWord());
  addFlag("parts_only", filter.GetPartsOnly());
  addFlag("bodies_only", filter.GetBodiesOnly());
  addFlag("selected_only", filter.GetSelectedOnly());
  text += " visibility=" + std::to_string(static_cast<int>(filter.GetVisibility()));
  addFlag("issues_only", filter.GetIssuesOnly());
  addFlag("use_results_list", filter.useResultsList);
  addFlag("results_list_live", filter.resultsListLive);
  addFlag("collapse_instances", filter.collapseInstances);
  addFlag("hide_bodies", filter.hideBodies);
  text += " list_mode=" + std::to_string(filter.listMode);
  addFlag("show_siblings", filter.GetShowSiblings());
  addFlag("ensure_expanded", filter.GetEnsureExpanded());
  text += " sort";
  addColumn(filter.GetSortColumn());
  addFlag("sort_ascending", filter.GetSortDirection());
  addFlag("dynamic_update", filter.GetDynamicUpdate());
  return text;
}

/// Every setting another than at the start.
void ChangeEverything(Filter& filter)
{
  filter.SetText("hex \"nut; m8\" \xff*");
  filter.SetSearchName(false);
  filter.SetColumns({du::DualSymbol("Data", "Weight/kg"), du::DualSymbol("a;b\\", "/"), du::DualSymbol("", "x")});
  filter.SetMatchCase(true);
  filter.SetMatchWholeWord(true);
  filter.SetPartsOnly(true);
  filter.SetBodiesOnly(true);
  filter.SetSelectedOnly(true);
  filter.SetVisibility(Visibility::Hidden);
  filter.SetIssuesOnly(true);
  filter.useResultsList = true;
  filter.resultsListLive = true;
  filter.collapseInstances = true;
  filter.hideBodies = true;
  filter.listMode = -7;
  filter.SetShowSiblings(true);
  filter.SetEnsureExpanded(true);
  filter.SetSortColumn(du::DualSymbol("Data;", "Cost\\"));
  filter.SetSortDirection(false);
  filter.SetDynamicUpdate(true);
}

class StructureFilterPreferences : public testing::Test {
public:
  StructureFilterPreferences(const StructureFilterPreferences&) = delete;
  StructureFilterPreferences& operator=(const StructureFilterPreferences&) = delete;

protected:
  StructureFilterPreferences()
  {
    const auto world = du::MakeSmart<testsupport::PlainWorld>();
    world->preferences = preferences;
    zelk::World::Install(world);
    dp::ZelTracer::SetSink([this](const dp::TraceLine& line) {
      EXPECT_EQ(line.type, dp::TraceType::Warning);
      trace.emplace_back(line.text);
    });
  }
  ~StructureFilterPreferences() override
  {
    dp::ZelTracer::SetSink({});
    zelk::World::Install(nullptr);
  }

  static std::string GetKey(const std::string& key) { return "Structure Filter/panel/" + key; }

  /// What a filter with nothing at its default becomes when this is stored.
  void LoadFromChanged(const std::string& key, const FakePreferences::Value& value)
  {
    preferences->values = {{GetKey(key), value}};
    trace.clear();
    filter = Filter("panel");
    ChangeEverything(filter);
    filter.LoadFromPreferences();
  }
  void ExpectDefaultAndTrace(const std::string& key)
  {
    Filter expected("panel");
    ChangeEverything(expected);
    SetDefault(expected, key);
    EXPECT_EQ(Describe(filter), Describe(expected)) << key;
    ASSERT_EQ(trace.size(), 1U) << key;
    EXPECT_NE(trace.front().find(GetKey(key)), std::string::npos) << trace.front();
  }
  static void SetDefault(Filter& expected, const std::string& key);

  du::SmartPtr<FakePreferences> preferences = du::MakeSmart<FakePreferences>();
  std::vector<std::string> trace;
  Filter filter{"panel"};
};

void StructureFilterPreferences::SetDefault(Filter& expected, const std::string& key)
{
  const std::map<std::string, std::function<void()>> defaults{
      {"text", [&] { expected.SetText(""); }},
      {"search_name", [&] { expected.SetSearchName(true); }},
      {"columns", [&] { expected.SetColumns({}); }},
      {"match_case", [&] { expected.SetMatchCase(false); }},
      {"match_whole_word", [&] { expected.SetMatchWholeWord(false); }},
      {"parts_only", [&] { expected.SetPartsOnly(false); }},
      {"bodies_only", [&] { expected.SetBodiesOnly(false); }},
      {"selected_only", [&] { expected.SetSelectedOnly(false); }},
      {"visibility", [&] { expected.SetVisibility(Visibility::Any); }},
      {"issues_only", [&] { expected.SetIssuesOnly(false); }},
      {"use_results_list", [&] { expected.useResultsList = false; }},
      {"results_list_live", [&] { expected.resultsListLive = false; }},
      {"collapse_instances", [&] { expected.collapseInstances = false; }},
      {"hide_bodies", [&] { expected.hideBodies = false; }},
      {"list_mode", [&] { expected.listMode = 0; }},
      {"show_siblings", [&] { expected.SetShowSiblings(false); }},
      {"ensure_expanded", [&] { expected.SetEnsureExpanded(false); }},
      {"sort_column", [&] { expected.SetSortColumn({}); }},
      {"sort_ascending", [&] { expected.SetSortDirection(true); }},
      {"dynamic_update", [&] { expected.SetDynamicUpdate(false); }},
  };
  defaults.at(key)();
}

TEST_F(StructureFilterPreferences, EverySetting_ComesBackAsItWasStored)
{
  ChangeEverything(filter);
  filter.StoreToPreferences();
  Filter loaded("panel");
  ASSERT_NE(Describe(loaded), Describe(filter));

  loaded.LoadFromPreferences();

  EXPECT_EQ(Describe(loaded), Describe(filter));
  EXPECT_EQ(preferences->values.size(), 20U);
  EXPECT_TRUE(trace.empty());
}

TEST_F(StructureFilterPreferences, TheSettingsOfANewFilter_ComeBackToAnother)
{
  filter.StoreToPreferences();
  Filter loaded("panel");
  ChangeEverything(loaded);

  loaded.LoadFromPreferences();

  EXPECT_EQ(Describe(loaded), Describe(filter));
  EXPECT_TRUE(trace.empty());
}

TEST_F(StructureFilterPreferences, EachVisibility_ComesBack)
{
  for (const Visibility visibility : {Visibility::Any, Visibility::Visible, Visibility::Hidden}) {
    filter.SetVisibility(visibility);
    filter.StoreToPreferences();
    Filter loaded("panel");

    loaded.LoadFromPreferences();

    EXPECT_EQ(loaded.GetVisibility(), visibility);
  }
}

TEST_F(StructureFilterPreferences, TheLoadedText_IsLookedForAsTheLoadedFlagsSay)
{
  preferences->values = {
      {GetKey("text"), std::string("car")}, {GetKey("match_case"), true}, {GetKey("match_whole_word"), true}};

  filter.LoadFromPreferences();

  EXPECT_TRUE(filter.GetFilteringName());
  EXPECT_TRUE(filter.GetMatchCase());
  EXPECT_TRUE(filter.GetMatchWholeWord());
}

TEST_F(StructureFilterPreferences, FiltersOfOtherNames_HaveTheirOwnSettings)
{
  Filter other("other");
  ChangeEverything(other);
  other.StoreToPreferences();

  filter.LoadFromPreferences();

  Filter fresh("panel");
  EXPECT_EQ(Describe(filter), Describe(fresh));
}

TEST_F(StructureFilterPreferences, EachFlag_IsReadUnderItsKeyAlone)
{
  for (const std::string& key : GetFlagKeys()) {
    Filter plain("panel");
    Filter loaded("panel");
    const bool isOnAtFirst = Describe(plain).find(" " + key + "=1") != std::string::npos;
    preferences->values = {{GetKey(key), !isOnAtFirst}};

    loaded.LoadFromPreferences();

    std::string expected = Describe(plain);
    expected.replace(expected.find(" " + key + "=") + key.size() + 2, 1, isOnAtFirst ? "0" : "1");
    EXPECT_EQ(Describe(loaded), expected);
  }
}

TEST_F(StructureFilterPreferences, WhatIsNotStored_KeepsItsValue)
{
  ChangeEverything(filter);
  const std::string before = Describe(filter);

  filter.LoadFromPreferences();

  EXPECT_EQ(Describe(filter), before);
  EXPECT_TRUE(trace.empty());
}

TEST_F(StructureFilterPreferences, AFlagThatIsNone_BecomesItsDefaultWithALineOfTrace)
{
  for (const std::string& key : GetFlagKeys()) {
    for (const FakePreferences::Value& value :
         {FakePreferences::Value(1), FakePreferences::Value(std::string("true"))}) {
      LoadFromChanged(key, value);
      ExpectDefaultAndTrace(key);
    }
  }
}

TEST_F(StructureFilterPreferences, ATextThatIsNone_BecomesItsDefaultWithALineOfTrace)
{
  for (const char* key : {"text", "columns", "visibility", "sort_column"}) {
    for (const FakePreferences::Value& value : {FakePreferences::Value(1), FakePreferences::Value(false)}) {
      LoadFromChanged(key, value);
      ExpectDefaultAndTrace(key);
    }
  }
}

TEST_F(StructureFilterPreferences, AListModeThatIsNoNumber_BecomesItsDefaultWithALineOfTrace)
{
  for (const FakePreferences::Value& value : {FakePreferences::Value(true), FakePreferences::Value(std::string("1"))}) {
    LoadFromChanged("list_mode", value);
    ExpectDefaultAndTrace("list_mode");
  }
}

TEST_F(StructureFilterPreferences, AnUnknownVisibility_BecomesTheDefaultWithALineOfTrace)
{
  for (const char* word : {"", "Visible", "visible ", "2", "none"}) {
    LoadFromChanged("visibility", std::string(word));
    ExpectDefaultAndTrace("visibility");
  }
}

TEST_F(StructureFilterPreferences, ColumnsThatDoNotParse_BecomeTheDefaultWithALineOfTrace)
{
  for (const char* text :
       {"Data", "Data/Weight", "Data;", ";", "/", "a/b/c;", "a/b;c", "a/b;;", "a/b\\;", "a/b;c/d\\"}) {
    LoadFromChanged("columns", std::string(text));
    ExpectDefaultAndTrace("columns");
  }
}

TEST_F(StructureFilterPreferences, ASortColumnThatDoesNotParse_BecomesTheDefaultWithALineOfTrace)
{
  for (const char* text : {"Data", "Data/Weight", "a/b;c/d;", "a/b;;", "\\"}) {
    LoadFromChanged("sort_column", std::string(text));
    ExpectDefaultAndTrace("sort_column");
  }
}

TEST_F(StructureFilterPreferences, ColumnsAsTheyAreWritten_AreRead)
{
  LoadFromChanged("columns", std::string("Data/Weight;/Name;a\\/b/c\\;d;x\\\\/\\y;"));

  EXPECT_TRUE(trace.empty());
  EXPECT_EQ(filter.GetColumns(), (Columns{du::DualSymbol("Data", "Weight"), du::DualSymbol("", "Name"),
                                          du::DualSymbol("a/b", "c;d"), du::DualSymbol("x\\", "y")}));
}

TEST_F(StructureFilterPreferences, TheLineOfTrace_ShowsWhatIsStored)
{
  LoadFromChanged("visibility", std::string("sometimes"));
  EXPECT_NE(trace.at(0).find("\"sometimes\""), std::string::npos);

  LoadFromChanged("text", 42);
  EXPECT_NE(trace.at(0).find("42"), std::string::npos);

  LoadFromChanged("text", true);
  EXPECT_NE(trace.at(0).find("true"), std::string::npos);
}

TEST_F(StructureFilterPreferences, WithoutAWorldOrPreferences_NothingHappens)
{
  ChangeEverything(filter);
  const std::string before = Describe(filter);

  zelk::World::Install(du::MakeSmart<testsupport::PlainWorld>());
  filter.StoreToPreferences();
  filter.LoadFromPreferences();
  zelk::World::Install(nullptr);
  filter.StoreToPreferences();
  filter.LoadFromPreferences();

  EXPECT_EQ(Describe(filter), before);
  EXPECT_TRUE(preferences->values.empty());
}

}  // namespace
