// Which highlights a host is told of, in which order, and what it may do meanwhile.

#include <gmock/gmock.h>

#include "testsupport/DisplaySwitches.h"
#include "testsupport/Panel.h"
#include "testsupport/RecordingSelectionManager.h"
#include "testsupport/WorldPanel.h"
#include "zelk/ObjectSelectionItem.h"

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;
using testsupport::DisplaySwitches;

using Items = std::vector<du::SmartPtr<zelk::SelectionItem>>;

Items MakeItems(const std::vector<du::SmartPtr<memkernel::Instance>>& instances)
{
  Items items;
  for (const auto& instance : instances) {
    items.push_back(du::MakeSmart<zelk::ObjectSelectionItem>(instance));
  }
  return items;
}

class HighlightCalls : public testing::Test {
protected:
  HighlightCalls()
  {
    panel.ShowTree();
    panel.state->PopulateTree(false);
    static_cast<void>(panel.host.TakeCalls());
  }

  [[nodiscard]] Items MakeItemsOf(const std::vector<std::string>& names) const
  {
    std::vector<du::SmartPtr<memkernel::Instance>> instances;
    for (const std::string& name : names) {
      instances.push_back(panel.kernel[name]);
    }
    return MakeItems(instances);
  }
  /// Turns on what the names say, with nothing recorded.
  void TurnOn(const std::vector<std::string>& names)
  {
    panel.state->SetAssocHlight(MakeItemsOf(names), true);
    static_cast<void>(panel.host.TakeCalls());
  }
  [[nodiscard]] bool IsOn(const std::string& name) const
  {
    return panel.state->IsAssocHlight(panel.kernel[name].Get());
  }
  /// The names that the recorded calls turn on or off: "+a", "-a". Forgets all that is recorded.
  [[nodiscard]] std::vector<std::string> TakeChanges()
  {
    std::vector<std::string> changes;
    for (const std::string& call : panel.host.TakeCalls()) {
      if (call.starts_with("SetAssocHlight(")) {
        const std::size_t begin = call.find('(') + 1;
        const bool isOn = call.find("on=true") != std::string::npos;
        changes.push_back((isOn ? "+" : "-") + call.substr(begin, call.find(',') - begin));
      }
    }
    return changes;
  }

  testsupport::Panel panel{"root[a b c]"};
};

TEST_F(HighlightCalls, ComeInTheOrderOfTheItems)
{
  panel.state->OnAssocHlightChanged(false, {}, MakeItemsOf({"b", "c", "a"}));
  EXPECT_THAT(TakeChanges(), ElementsAre("+b", "+c", "+a"));

  panel.state->OnAssocHlightChanged(false, MakeItemsOf({"a", "c", "b"}), {});
  EXPECT_THAT(TakeChanges(), ElementsAre("-a", "-c", "-b"));
}

TEST_F(HighlightCalls, OfAClear_ComeAfterTheirInstanceHasLeftTheRecord)
{
  TurnOn({"a", "b"});
  std::vector<bool> wereRecorded;
  panel.host.onCall = [&](const std::string& line) {
    if (line.starts_with("SetAssocHlight")) {
      wereRecorded.push_back(IsOn(line.substr(line.find('(') + 1, 1)));
    }
  };

  panel.state->OnAssocHlightChanged(true, {}, {});

  EXPECT_THAT(wereRecorded, ElementsAre(false, false));
}

TEST_F(HighlightCalls, OfAnUpdateThatTurnsOff_AreForWhatTheControllerNames)
{
  TurnOn({"a", "b"});
  panel.UseSelController()->highlighted = {panel.kernel["b"], panel.kernel["c"]};

  panel.state->UpdateAssocHighlights(false);

  EXPECT_THAT(TakeChanges(), ElementsAre("-b"));
  EXPECT_TRUE(IsOn("a"));
}

TEST_F(HighlightCalls, OfAnUpdateWhileTheControllerNamesNothing_AreTheBracketAlone)
{
  static_cast<void>(panel.UseSelController());

  panel.state->UpdateAssocHighlights(true);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("StartTreeUpdate()", "FinishTreeUpdate()"));
}

TEST_F(HighlightCalls, OfARefreshWithoutAController_OnlyTurnOff)
{
  TurnOn({"a"});

  panel.state->RefreshAssocHlights();

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StartTreeUpdate()", "SetAssocHlight(a, on=false) -> false", "FinishTreeUpdate()"));
  EXPECT_FALSE(IsOn("a"));
}

TEST_F(HighlightCalls, OfAClear_DoNotComeTwiceForWhatTheHostTurnsOffMeanwhile)
{
  TurnOn({"a", "b", "c"});
  panel.host.onCall = [&](const std::string& line) {
    if (line.starts_with("SetAssocHlight")) {
      panel.host.onCall = nullptr;
      panel.state->OnAssocHlightChanged(false, MakeItemsOf({"a", "b", "c"}), {});
    }
  };

  panel.state->OnAssocHlightChanged(true, {}, {});

  EXPECT_THAT(TakeChanges(), UnorderedElementsAre("-a", "-b", "-c"));
}

TEST_F(HighlightCalls, OfAClear_ComeAlsoForWhatTheHostTurnsOnMeanwhile)
{
  TurnOn({"a"});
  panel.host.onCall = [&](const std::string& line) {
    if (line.starts_with("SetAssocHlight(a")) {
      panel.host.onCall = nullptr;
      panel.state->OnAssocHlightChanged(false, {}, MakeItemsOf({"b"}));
    }
  };

  panel.state->OnAssocHlightChanged(true, {}, {});

  EXPECT_THAT(TakeChanges(), ElementsAre("-a", "+b", "-b"));
  EXPECT_FALSE(IsOn("b"));
}

TEST_F(HighlightCalls, OfARefreshInWhichTheHostPopulates_EndWithWhatTheControllerNames)
{
  TurnOn({"a", "b"});
  panel.UseSelController()->highlighted = {panel.kernel["b"], panel.kernel["c"]};
  panel.host.onCall = [&](const std::string& line) {
    if (line.starts_with("SetAssocHlight")) {
      panel.host.onCall = nullptr;
      panel.state->PopulateTree(false);
      static_cast<void>(panel.host.TakeCalls());
    }
  };

  panel.state->RefreshAssocHlights();

  const std::vector<std::string> changes = TakeChanges();
  ASSERT_EQ(changes.size(), 4U);
  EXPECT_THAT((std::vector<std::string>{changes[0], changes[1]}), UnorderedElementsAre("-b", "-c"));
  EXPECT_THAT((std::vector<std::string>{changes[2], changes[3]}), UnorderedElementsAre("+b", "+c"));
}

/// A filled panel that collapses a group of three siblings.
class HighlightCallsOfCollapsedGroups : public testing::Test {
protected:
  HighlightCallsOfCollapsedGroups()
  {
    const auto bolt = panel.GetTree().CreateProduct({.name = "bolt"});
    for (const char* name : {"bolt1", "bolt2", "bolt3"}) {
      bolts.push_back(panel.GetTree().AddChild(panel.kernel["root"], bolt, name));
    }
    panel.world->selectionManager = selection;
    panel.Initialise();
  }

  const DisplaySwitches switches{true};
  testsupport::WorldPanel panel{"root"};
  du::SmartPtr<testsupport::RecordingSelectionManager> selection =
      du::MakeSmart<testsupport::RecordingSelectionManager>();
  std::vector<du::SmartPtr<memkernel::Instance>> bolts;
};

TEST_F(HighlightCallsOfCollapsedGroups, AreForTheSiblingsThemselves)
{
  EXPECT_TRUE(panel.state->OnAssocHlightChanged(false, {}, MakeItems({bolts[1], bolts[2]})));

  EXPECT_FALSE(panel.state->IsAssocHlight(bolts[0].Get()));
  EXPECT_TRUE(panel.state->IsAssocHlight(bolts[1].Get()));
  EXPECT_TRUE(panel.state->IsAssocHlight(bolts[2].Get()));

  EXPECT_TRUE(panel.state->OnAssocHlightChanged(false, MakeItems({bolts[1]}), {}));
  EXPECT_FALSE(panel.state->IsAssocHlight(bolts[1].Get()));
  EXPECT_TRUE(panel.state->IsAssocHlight(bolts[2].Get()));
}

TEST_F(HighlightCallsOfCollapsedGroups, OfAnUpdate_AreForTheSiblingsThatTheSelectionNames)
{
  selection->instances[zelk::SelectionManager::AssocHlightList] = {bolts[2]};

  panel.state->OnAssocHlightColorChange();

  EXPECT_FALSE(panel.state->IsAssocHlight(bolts[0].Get()));
  EXPECT_TRUE(panel.state->IsAssocHlight(bolts[2].Get()));
}

}  // namespace
