#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "FilterRun.h"

namespace {

using filtertest::FilterItem;
using Visibility = zelremote::StructureFilterInfo::Visibility;
using Filter = zelremote::StructureFilterInfo;

enum class Kind { Group, Part, Body };
enum class Shown { NotAtAll, Visible, Hidden };

struct Traits {
  bool hasName = false;
  bool hasMaterial = false;
  Kind kind = Kind::Group;
  bool isSelected = false;
  Shown shown = Shown::NotAtAll;
  bool hasIssue = false;
  bool isOnList = false;
  bool isLaterSibling = false;
};

/// One way to leave instances out, and what is left then.
struct Criterion {
  const char* name;
  std::function<void(Filter&)> turnOn;
  std::function<bool(const Traits&)> meets;
};

const std::vector<Criterion>& GetCriteria()
{
  static const std::vector<Criterion> s_criteria{
      {"name", [](Filter& f) { f.SetText("wanted"); }, [](const Traits& t) { return t.hasName; }},
      {"material",
       [](Filter& f) {
         f.SetText("wanted");
         f.SetSearchName(false);
         f.SetColumns({du::DualSymbol("Data", "Material")});
       },
       [](const Traits& t) { return t.hasMaterial; }},
      {"parts", [](Filter& f) { f.SetPartsOnly(true); }, [](const Traits& t) { return t.kind == Kind::Part; }},
      {"bodies", [](Filter& f) { f.SetBodiesOnly(true); }, [](const Traits& t) { return t.kind == Kind::Body; }},
      {"selected", [](Filter& f) { f.SetSelectedOnly(true); }, [](const Traits& t) { return t.isSelected; }},
      {"visible", [](Filter& f) { f.SetVisibility(Visibility::Visible); },
       [](const Traits& t) { return t.shown == Shown::Visible; }},
      {"hidden", [](Filter& f) { f.SetVisibility(Visibility::Hidden); },
       [](const Traits& t) { return t.shown == Shown::Hidden; }},
      {"issues", [](Filter& f) { f.SetIssuesOnly(true); }, [](const Traits& t) { return t.hasIssue; }},
      {"results", [](Filter& f) { f.useResultsList = true; }, [](const Traits& t) { return t.isOnList; }},
      {"hide bodies", [](Filter& f) { f.hideBodies = true; }, [](const Traits& t) { return t.kind != Kind::Body; }},
      {"collapse", [](Filter& f) { f.collapseInstances = true; }, [](const Traits& t) { return !t.isLaterSibling; }},
  };
  return s_criteria;
}

/// Settings of one thing that take each other's place or stand side by side.
bool AreOfOneThing(const std::string& a, const std::string& b)
{
  const auto are = [&](const char* x, const char* y) { return (a == x && b == y) || (a == y && b == x); };
  return are("name", "material") || are("visible", "hidden") || are("parts", "bodies");
}

/// One instance for each combination of traits, all below one root.
class StructureFilterPairs : public testing::Test {
protected:
  StructureFilterPairs()
  {
    for (const Kind kind : {Kind::Group, Kind::Part, Kind::Body}) {
      for (const Shown shown : {Shown::NotAtAll, Shown::Visible, Shown::Hidden}) {
        for (unsigned int flags = 0; flags < 64; ++flags) {
          Add({.hasName = (flags & 1U) != 0,
               .hasMaterial = (flags & 2U) != 0,
               .kind = kind,
               .isSelected = (flags & 4U) != 0,
               .shown = shown,
               .hasIssue = (flags & 8U) != 0,
               .isOnList = (flags & 16U) != 0,
               .isLaterSibling = (flags & 32U) != 0});
        }
      }
    }
  }

  void Add(const Traits& traits)
  {
    FilterItem* item = root->Add(traits.hasName ? "the wanted one" : "another");
    item->SetProperty("Data", "Material", traits.hasMaterial ? "wanted" : "steel");
    item->isBody = traits.kind == Kind::Body;
    if (traits.kind == Kind::Group) {
      item->Add("child");
    }
    if (traits.shown != Shown::NotAtAll) {
      run.scene->Show(item, traits.shown == Shown::Visible);
    }
    if (traits.hasIssue) {
      run.issues.issues[item] = structure_utils::TreeFilterAdditionalInfo::TreeFilterStatusLookup::TFStatusBodyFailed;
    }
    const du::SmartPtr<zelk::BaseInstance> instance(item);
    if (traits.isSelected) {
      run.selected.insert(instance);
    }
    if (traits.isOnList) {
      run.results.insert(instance);
    }
    item->isSibling = true;
    item->isFirstSibling = !traits.isLaterSibling;
    items.emplace_back(item, traits);
  }

  /// Answers how many come through.
  int ExpectPassing(Filter& filter, const std::function<bool(const Traits&)>& meets)
  {
    du::SmartPtr<du::RefCounted> info = run.MakeInfo();
    int count = 0;
    for (const auto& [item, traits] : items) {
      const bool passes =
          !filter.IsFilteredOut(du::SmartPtr<zelk::BaseInstance>(item), run.selected, false, info, nullptr);
      EXPECT_EQ(passes, meets(traits)) << "item " << count;
      count += passes ? 1 : 0;
    }
    return count;
  }

  filtertest::FilterRun run;
  filtertest::Item root = du::MakeSmart<FilterItem>("root");
  std::vector<std::pair<FilterItem*, Traits>> items;
};

TEST_F(StructureFilterPairs, EachAlone_LetsThroughWhatMeetsIt)
{
  for (const Criterion& criterion : GetCriteria()) {
    SCOPED_TRACE(criterion.name);
    Filter filter("panel");

    criterion.turnOn(filter);

    const int count = ExpectPassing(filter, criterion.meets);
    EXPECT_GT(count, 0);
    EXPECT_LT(count, static_cast<int>(items.size()));
  }
}

TEST_F(StructureFilterPairs, TwoTogether_LetThroughWhatMeetsBoth)
{
  const auto& criteria = GetCriteria();
  for (std::size_t a = 0; a < criteria.size(); ++a) {
    for (std::size_t b = a + 1; b < criteria.size(); ++b) {
      if (AreOfOneThing(criteria[a].name, criteria[b].name)) {
        continue;
      }
      SCOPED_TRACE(std::string(criteria[a].name) + " and " + criteria[b].name);
      Filter filter("panel");
      criteria[a].turnOn(filter);

      criteria[b].turnOn(filter);

      ExpectPassing(filter, [&](const Traits& t) { return criteria[a].meets(t) && criteria[b].meets(t); });
    }
  }
}

TEST_F(StructureFilterPairs, AllTogether_LetThroughWhatMeetsAll)
{
  Filter filter("panel");
  for (const char* name : {"name", "parts", "selected", "visible", "issues", "results", "hide bodies", "collapse"}) {
    for (const Criterion& criterion : GetCriteria()) {
      if (std::string(criterion.name) == name) {
        criterion.turnOn(filter);
      }
    }
  }

  const int count = ExpectPassing(filter, [](const Traits& t) {
    return t.hasName && t.kind == Kind::Part && t.isSelected && t.shown == Shown::Visible && t.hasIssue && t.isOnList
           && !t.isLaterSibling;
  });

  EXPECT_EQ(count, 2);
}

}  // namespace
