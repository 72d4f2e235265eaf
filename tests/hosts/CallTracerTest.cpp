#include "hostcheck/CallTracer.h"

#include <gmock/gmock.h>

#include "TestInstance.h"
#include "guitree/TypeIconMap.h"
#include "testsupport/ScriptedHost.h"
#include "zelk/ObjectSelectionItem.h"

namespace {

using hosttest::Create;
using hosttest::Make;
using testing::ElementsAre;

class CallTracerTest : public testing::Test {
protected:
  std::vector<std::string> lines;
  testsupport::ScriptedHost next;
  hostcheck::CallTracer tracer{&next, [this](const std::string& line) { lines.push_back(line); }};
};

TEST_F(CallTracerTest, Calls_WithoutANextHost_AreAnsweredByDefault)
{
  hostcheck::CallTracer alone(nullptr, [this](const std::string& line) { lines.push_back(line); });

  EXPECT_TRUE(alone.IsValidView({}));
  alone.ClearTree();

  EXPECT_THAT(lines, ElementsAre("IsValidView(null) -> true", "ClearTree()"));
}

TEST_F(CallTracerTest, Calls_WithoutASink_AreStillPassedOn)
{
  next.isValidView = false;
  hostcheck::CallTracer silent(&next, {});

  EXPECT_FALSE(silent.IsValidView({}));
  EXPECT_EQ(silent.GetCallCount(), 1U);
}

TEST_F(CallTracerTest, Arguments_StandBehindTheirNames)
{
  const auto root = Make("root");
  const auto bolt = Make("bolt", root);

  tracer.InstanceRemove(bolt, root, true);
  tracer.UpdateQuickSearchResults(true, {}, false);
  tracer.SetAssocHlight(bolt.Get(), true);
  tracer.PostOnActiveViewChanged({}, true);
  tracer.MadeVisible(false);

  EXPECT_THAT(lines, ElementsAre("InstanceRemove(bolt, parent=root, repopulatePending=true)",
                                 "UpdateQuickSearchResults(true, view=null, filterNeeded=false)",
                                 "SetAssocHlight(bolt, on=true) -> false",
                                 "PostOnActiveViewChanged(null, wasClashReport=true)", "MadeVisible(false)"));
}

TEST_F(CallTracerTest, AHighlightThatIsTurnedOff_StandsByTheNameThatWasSeenLast_SinceTheInstanceMayHaveEnded)
{
  auto bolt = Make("bolt");
  // Made first, or it would stand at the address of the one that has ended.
  const auto unseen = Make("unseen");
  zelk::BaseInstance* const ended = bolt.Get();
  tracer.SetAssocHlight(ended, true);
  bolt.Reset();
  lines.clear();

  tracer.SetAssocHlight(ended, false);
  tracer.SetAssocHlight(unseen.Get(), false);

  EXPECT_THAT(lines, ElementsAre("SetAssocHlight(bolt, on=false) -> false", "SetAssocHlight(?, on=false) -> false"));
}

TEST_F(CallTracerTest, Nodes_StandByTheirInstances)
{
  const auto bolt = Make("bolt");
  guitree::FilteredTree::Node node{.instance = bolt.Get()};

  tracer.InstanceCreate(&node, {}, true);
  tracer.FilterNodeCreate(&node);

  EXPECT_THAT(lines,
              ElementsAre("InstanceCreate(node bolt, controller=no, assoc=true)", "FilterNodeCreate(node bolt)"));
}

TEST_F(CallTracerTest, SelectionItems_StandByWhatTheySelect)
{
  const auto bolt = Make("bolt");
  std::vector<du::SmartPtr<zelk::Object>> items{du::MakeSmart<zelk::ObjectSelectionItem>(bolt), bolt, nullptr};
  std::vector<du::SmartPtr<zelk::Object>> none;

  tracer.SelectItems(items);
  tracer.DeselectItems(none);

  EXPECT_THAT(lines, ElementsAre("SelectItems([bolt, bolt, null])", "DeselectItems([])"));
}

TEST_F(CallTracerTest, Maps_ListTheNamesOfKnownInstancesSortedAndMarkOthers)
{
  const auto bolt = Make("bolt");
  const auto nut = Make("nut");
  const auto hidden = Make("hidden");
  Create(tracer, nut);
  Create(tracer, bolt);
  lines.clear();
  du::HashMap<const zelk::BaseInstance*, guitree::VisibleState> visible;
  visible[nut.Get()] = guitree::VisibleStateVisible;
  visible[bolt.Get()] = guitree::VisibleStateHidden;
  visible[hidden.Get()] = guitree::VisibleStateVisible;
  du::HashMap<const zelk::BaseInstance*, int> changes;

  tracer.UpdateVisAndTypeIconChanges(&visible, &changes, nullptr, nullptr);
  tracer.RememberName(*hidden);
  tracer.UpdateVisAndTypeIcons(&visible, nullptr);
  tracer.UpdateVisAndTypeIcons(nullptr, nullptr);

  EXPECT_THAT(lines, ElementsAre("UpdateVisAndTypeIconChanges(visible={?: 1, bolt: 2, nut: 1}, visibleChanges={}, "
                                 "typeIcons=no, typeIconChanges=null)",
                                 "UpdateVisAndTypeIcons(visible={bolt: 2, hidden: 1, nut: 1}, typeIcons=no)",
                                 "UpdateVisAndTypeIcons(visible=null, typeIcons=no)"));
}

TEST_F(CallTracerTest, MapsInWords_TellWhatWasAndWhatIs)
{
  const auto bolt = Make("bolt");
  const auto nut = Make("nut");
  Create(tracer, nut);
  Create(tracer, bolt);
  lines.clear();
  du::HashMap<const zelk::BaseInstance*, guitree::VisibleState> visible;
  visible[nut.Get()] = guitree::VisibleStateThumbnailVisible;
  du::HashMap<const zelk::BaseInstance*, int> changes;
  changes[nut.Get()] = 7 << 4 | 2;
  changes[bolt.Get()] = 2 << 4 | 6;
  guitree::TypeIconMap icons(nullptr);
  icons.Set(bolt.Get(), 0);
  du::HashMap<const zelk::BaseInstance*, int> iconChanges;
  iconChanges[bolt.Get()] = 1;
  iconChanges[nut.Get()] = 28;
  tracer.SetMapStyle({.words = true});

  tracer.UpdateVisAndTypeIcons(&visible, &icons);
  tracer.UpdateVisAndTypeIconChanges(&visible, &changes, &icons, &iconChanges);
  tracer.UpdateVisAndTypeIcons(nullptr, nullptr);

  EXPECT_THAT(
      lines,
      ElementsAre("UpdateVisAndTypeIcons(visible=1, typeIcons=yes)",
                  "UpdateVisAndTypeIconChanges(visible=1, visibleChanges={bolt: hidden-all -> hidden, "
                  "nut: hidden -> thumbnail-visible}, typeIcons=yes, typeIconChanges={bolt: 0 -> 1, nut: -> 28})",
                  "UpdateVisAndTypeIcons(visible=null, typeIcons=no)"));
}

TEST_F(CallTracerTest, MapsInWords_ForgetTheIconOfARowThatComesAnew)
{
  const auto bolt = Make("bolt");
  guitree::TypeIconMap icons(nullptr);
  icons.Set(bolt.Get(), 0);
  du::HashMap<const zelk::BaseInstance*, int> iconChanges;
  iconChanges[bolt.Get()] = 1;
  tracer.SetMapStyle({.words = true});
  tracer.UpdateVisAndTypeIcons(nullptr, &icons);
  Create(tracer, bolt);
  lines.clear();

  tracer.UpdateVisAndTypeIconChanges(nullptr, nullptr, &icons, &iconChanges);
  iconChanges[bolt.Get()] = 28;
  tracer.UpdateVisAndTypeIconChanges(nullptr, nullptr, &icons, &iconChanges);

  EXPECT_THAT(lines, ElementsAre("UpdateVisAndTypeIconChanges(visible=null, visibleChanges=null, typeIcons=yes, "
                                 "typeIconChanges={bolt: -> 1})",
                                 "UpdateVisAndTypeIconChanges(visible=null, visibleChanges=null, typeIcons=yes, "
                                 "typeIconChanges={bolt: 1 -> 28})"));
}

TEST_F(CallTracerTest, MapsInListOrder_StandAsTheMapIsWalked)
{
  du::HashMap<const zelk::BaseInstance*, int> changes;
  std::vector<hosttest::Instance> instances;
  for (const char* name : {"e", "b", "d", "a", "c"}) {
    instances.push_back(Make(name));
    tracer.RememberName(*instances.back());
    changes[instances.back().Get()] = 18;
  }
  std::string walked;
  for (const auto& change : changes) {
    walked += (walked.empty() ? "" : ", ") + std::string(change.first->GetObjectName()) + ": 18";
  }
  tracer.SetMapStyle({.listOrder = true});

  tracer.UpdateVisAndTypeIconChanges(nullptr, &changes, nullptr, nullptr);

  EXPECT_THAT(lines, ElementsAre("UpdateVisAndTypeIconChanges(visible=null, visibleChanges={" + walked
                                 + "}, typeIcons=no, typeIconChanges=null)"));
}

TEST_F(CallTracerTest, SetNamer_NamesAllObjects)
{
  tracer.SetNamer([](const zelk::Object& object) { return '<' + std::string(object.GetObjectName()) + '>'; });
  const auto root = Make("root");

  Create(tracer, Make("bolt", root));

  EXPECT_THAT(lines, ElementsAre("InstanceCreate(<bolt>, parent=<root>, controller=no, assoc=false)"));
}

TEST_F(CallTracerTest, ObjectsWithoutAName_AreUnnamed)
{
  Create(tracer, Make(""));

  EXPECT_THAT(lines, ElementsAre("InstanceCreate(unnamed, parent=null, controller=no, assoc=false)"));
}

TEST_F(CallTracerTest, ListsOfInstances_StandInBracketsAndNullByItself)
{
  const auto bolt = Make("bolt");
  std::list<zelk::BaseInstance*> spared{bolt.Get()};
  next.nonFilteredInsts1 = &spared;

  EXPECT_EQ(tracer.GetNonFilteredInsts1(), &spared);
  EXPECT_EQ(tracer.GetNonFilteredInsts2(), nullptr);

  EXPECT_THAT(lines, ElementsAre("GetNonFilteredInsts1() -> [bolt]", "GetNonFilteredInsts2() -> null"));
}

}  // namespace
