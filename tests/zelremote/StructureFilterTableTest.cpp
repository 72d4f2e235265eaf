#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FilterRun.h"

namespace {

using Visibility = zelremote::StructureFilterInfo::Visibility;

struct Settings {
  bool text = false;
  bool searchName = false;
  bool columns = false;
  bool parts = false;
  bool bodies = false;
  bool selected = false;
  Visibility visibility = Visibility::Any;
  bool issues = false;
  bool results = false;
  bool collapse = false;
  bool hideBodies = false;
  bool siblings = false;
  int listMode = 0;
};

/// Takes `number` apart into one digit after the other.
class Digits {
public:
  explicit Digits(unsigned int number) : m_rest(number) {}
  int Take(unsigned int base)
  {
    const unsigned int digit = m_rest % base;
    m_rest /= base;
    return static_cast<int>(digit);
  }
  bool TakeFlag() { return Take(2) == 1; }

private:
  unsigned int m_rest;
};

constexpr unsigned int s_combinations = (1U << 11U) * 3U * 3U;

Settings MakeSettings(unsigned int number)
{
  Digits digits(number);
  Settings settings;
  for (bool Settings::*flag : {&Settings::text, &Settings::searchName, &Settings::columns, &Settings::parts,
                               &Settings::bodies, &Settings::selected, &Settings::issues, &Settings::results,
                               &Settings::collapse, &Settings::hideBodies, &Settings::siblings}) {
    settings.*flag = digits.TakeFlag();
  }
  settings.visibility = static_cast<Visibility>(digits.Take(3));
  settings.listMode = digits.Take(3);
  return settings;
}

zelremote::StructureFilterInfo MakeFilter(const Settings& settings)
{
  zelremote::StructureFilterInfo filter("panel");
  filter.SetText(settings.text ? "nut" : " ");
  filter.SetSearchName(settings.searchName);
  if (settings.columns) {
    filter.SetColumns({du::DualSymbol("Group", "Material")});
  }
  filter.SetPartsOnly(settings.parts);
  filter.SetBodiesOnly(settings.bodies);
  filter.SetSelectedOnly(settings.selected);
  filter.SetVisibility(settings.visibility);
  filter.SetIssuesOnly(settings.issues);
  filter.useResultsList = settings.results;
  filter.collapseInstances = settings.collapse;
  filter.hideBodies = settings.hideBodies;
  filter.SetShowSiblings(settings.siblings);
  filter.listMode = settings.listMode;
  return filter;
}

/// The same answers, from a list of what is on.
struct Expectation {
  explicit Expectation(const Settings& s)
  {
    std::vector<std::string> kernelCriteria;
    std::vector<std::string> viewCriteria;
    const auto addIf = [](std::vector<std::string>& list, bool isOn, const char* name) {
      if (isOn) {
        list.emplace_back(name);
      }
    };
    addIf(kernelCriteria, s.text && s.searchName, "name");
    addIf(kernelCriteria, s.text && s.columns, "columns");
    addIf(kernelCriteria, s.parts, "parts");
    addIf(kernelCriteria, s.bodies, "bodies");
    addIf(kernelCriteria, s.selected, "selected");
    addIf(kernelCriteria, s.results, "results");
    addIf(viewCriteria, s.visibility == Visibility::Visible, "visible");
    addIf(viewCriteria, s.visibility == Visibility::Hidden, "hidden");
    addIf(viewCriteria, s.issues, "issues");

    const std::size_t criteria = kernelCriteria.size() + viewCriteria.size();
    const int hides = (s.hideBodies ? 1 : 0) + (s.collapse ? 1 : 0);
    usesView = !viewCriteria.empty();
    isFilteringWithoutBodies = criteria > 0 || s.collapse;
    isFilteringWithBodies = criteria > 0 || hides > 0;
    isBaseWithoutBodies = !kernelCriteria.empty() || s.collapse;
    isBaseWithBodies = !kernelCriteria.empty() || hides > 0;
    isHiddenTheWholeFilter = hides > 0 && criteria == 0;
    hasHiddenPass = isHiddenTheWholeFilter;
    if (hides > 0 && s.siblings) {
      hasHiddenPass = true;
    }
  }

  bool usesView;
  bool isFilteringWithoutBodies;
  bool isFilteringWithBodies;
  bool isBaseWithoutBodies;
  bool isBaseWithBodies;
  bool isHiddenTheWholeFilter;
  bool hasHiddenPass;
};

TEST(StructureFilterTable, EveryCombinationOfSettings_AnswersAsTheTableTells)
{
  for (unsigned int number = 0; number < s_combinations; ++number) {
    SCOPED_TRACE(number);
    const Settings settings = MakeSettings(number);

    zelremote::StructureFilterInfo filter = MakeFilter(settings);

    const Expectation expected(settings);
    ASSERT_EQ(filter.IsFiltering(false), expected.isFilteringWithoutBodies);
    ASSERT_EQ(filter.IsFiltering(true), expected.isFilteringWithBodies);
    ASSERT_EQ(filter.IsFilteringBase(false), expected.isBaseWithoutBodies);
    ASSERT_EQ(filter.IsFilteringBase(true), expected.isBaseWithBodies);
    ASSERT_EQ(filter.IsHiddenFilter(false), expected.hasHiddenPass);
    ASSERT_EQ(filter.IsHiddenFilter(true), expected.isHiddenTheWholeFilter);
    ASSERT_EQ(filter.IsFilteringUsingView(), expected.usesView);
    ASSERT_FALSE(filter.GetNotSyncPartsStatus());
    ASSERT_TRUE(filter.HasDynamicUpdateOption());
  }
}

TEST(StructureFilterTable, EveryCombinationOfSettings_NamesTheCriteriaThatAreOn)
{
  for (unsigned int number = 0; number < s_combinations; ++number) {
    SCOPED_TRACE(number);
    const Settings settings = MakeSettings(number);

    zelremote::StructureFilterInfo filter = MakeFilter(settings);

    ASSERT_EQ(filter.GetFilteringName(), settings.text && settings.searchName);
    ASSERT_EQ(filter.GetFilteringColumns(), settings.text && settings.columns);
    ASSERT_EQ(filter.GetFilteringParts(), settings.parts);
    ASSERT_EQ(filter.GetFilteringBodies(), settings.bodies);
    ASSERT_EQ(filter.GetFilteringSel(), settings.selected);
    ASSERT_EQ(filter.GetFilteringVis(), settings.visibility != Visibility::Any);
    ASSERT_EQ(filter.GetFilteringIssues(), settings.issues);
    ASSERT_EQ(filter.GetShowSiblings(), settings.siblings);
    ASSERT_EQ(filter.GetCollapseInstances(), settings.collapse);
    ASSERT_EQ(filter.GetHideBodies(), settings.hideBodies);
  }
}

TEST(StructureFilterTable, WhereTheHiddenPassIsTheWholeFilter_ThereIsOne)
{
  for (unsigned int number = 0; number < s_combinations; ++number) {
    const zelremote::StructureFilterInfo filter = MakeFilter(MakeSettings(number));

    ASSERT_TRUE(!filter.IsHiddenFilter(true) || filter.IsHiddenFilter(false)) << number;
    ASSERT_TRUE(!filter.IsHiddenFilter(false) || filter.IsFiltering(true)) << number;
    ASSERT_TRUE(!filter.IsFilteringBase(false) || filter.IsFiltering(false)) << number;
  }
}

TEST(StructureFilterTable, TheRoot_IsSparedUnderEverySetting)
{
  const du::SmartPtr<zelk::BaseInstance> root = du::MakeSmart<filtertest::FilterItem>("root");
  for (unsigned int number = 0; number < s_combinations; ++number) {
    zelremote::StructureFilterInfo filter = MakeFilter(MakeSettings(number));

    ASSERT_FALSE(filter.IsRootFilteredOut(root)) << number;
  }
}

TEST(StructureFilterTable, ClearCriteria_LeavesWhatHidesAndHowItIsShown)
{
  for (unsigned int number = 0; number < s_combinations; ++number) {
    const Settings settings = MakeSettings(number);
    zelremote::StructureFilterInfo filter = MakeFilter(settings);

    filter.ClearCriteria();

    ASSERT_EQ(filter.IsFiltering(false), settings.collapse) << number;
    ASSERT_EQ(filter.IsFiltering(true), settings.collapse || settings.hideBodies) << number;
    ASSERT_FALSE(filter.IsFilteringUsingView()) << number;
    ASSERT_EQ(filter.GetText(), "") << number;
    ASSERT_EQ(filter.GetSearchName(), settings.searchName) << number;
    ASSERT_EQ(filter.GetColumns().size(), settings.columns ? 1U : 0U) << number;
    ASSERT_EQ(filter.GetShowSiblings(), settings.siblings) << number;
    ASSERT_EQ(filter.listMode, settings.listMode) << number;
  }
}

}  // namespace
