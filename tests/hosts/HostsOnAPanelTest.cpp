#include <gmock/gmock.h>

#include <functional>
#include <utility>

#include "TextOf.h"
#include "guitree/TreeSelectionController.h"
#include "hostcheck/ProtocolChecker.h"
#include "testsupport/Panel.h"

namespace {

using hosttest::TextOf;
using testing::IsEmpty;

/// Runs a function once, inside of the creation of the named row.
class Interfering : public hostcheck::ForwardingHost {
public:
  using ForwardingHost::ForwardingHost;
  using ForwardingHost::InstanceCreate;

  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override
  {
    ForwardingHost::InstanceCreate(instance, parent, controller, assocHlight);
    if (instance->GetObjectName() == row) {
      if (const auto once = std::exchange(interfere, {})) {
        once();
      }
    }
  }

  std::string row;
  std::function<void()> interfere;
};

/// A real panel on a checker on a text host.
class HostsOnAPanel : public testing::Test {
protected:
  void SetUp() override { panel.gui->SetGuiInterface(&checker); }
  void TearDown() override
  {
    checker.CheckAtRest();
    EXPECT_THAT(checker.GetViolations(), IsEmpty());
    EXPECT_THAT(checker.GetNotes(), IsEmpty());
    EXPECT_EQ(checker.GetRowCount(), text.GetRowCount());
    EXPECT_FALSE(text.IsUpdating());
  }

  const std::string everything =
      "root\n"
      "├─ plate\n"
      "│  ├─ bolt\n"
      "│  └─ nut\n"
      "└─ rod\n";
  texthost::TextHost text;
  Interfering interfering{&text};
  hostcheck::ProtocolChecker checker{&interfering};
  testsupport::Panel panel{"root[plate[bolt nut] rod]"};
};

TEST_F(HostsOnAPanel, Population_GivesTheRowsOfTheTree)
{
  panel.Initialise();

  EXPECT_EQ(TextOf(text), everything);
}

TEST_F(HostsOnAPanel, SecondPopulation_GivesTheSameRows)
{
  panel.Initialise();

  panel.state->PopulateTree(true);

  EXPECT_EQ(TextOf(text), everything);
}

TEST_F(HostsOnAPanel, HiddenParent_LeavesItsChildrenToTheNextAncestor)
{
  panel.state->hidden.insert(panel.kernel["plate"].Get());

  panel.Initialise();

  EXPECT_EQ(TextOf(text),
            "root\n"
            "├─ bolt\n"
            "├─ nut\n"
            "└─ rod\n");
}

TEST_F(HostsOnAPanel, HiddenRoot_LeavesItsChildrenAtTheTop)
{
  panel.state->hidden.insert(panel.kernel["root"].Get());

  panel.Initialise();

  EXPECT_EQ(TextOf(text),
            "plate\n"
            "├─ bolt\n"
            "└─ nut\n"
            "rod\n");
}

TEST_F(HostsOnAPanel, PopulationInsideAnother_EndsInTheRowsOfOne)
{
  for (const char* row : {"root", "plate", "bolt", "rod"}) {
    interfering.row = row;
    interfering.interfere = [this] { panel.state->PopulateTree(false); };

    panel.Initialise();

    EXPECT_FALSE(interfering.interfere) << row;
    EXPECT_EQ(TextOf(text), everything) << row;
  }
}

TEST_F(HostsOnAPanel, ResetInsideAPopulation_IsFollowedByNoRow)
{
  interfering.row = "plate";
  interfering.interfere = [this] { panel.state->Reset(); };

  panel.Initialise();

  EXPECT_EQ(text.GetRowCount(), 0U);
}

TEST_F(HostsOnAPanel, EmptyTree_GivesNoRows)
{
  testsupport::Panel empty("");
  empty.gui->SetGuiInterface(&checker);

  empty.Initialise();

  EXPECT_EQ(TextOf(text), "");
}

}  // namespace
