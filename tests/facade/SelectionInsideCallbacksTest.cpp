#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "memkernel/SelectionManager.h"
#include "testsupport/WorldPanel.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testsupport::WorldPanel;
using zelk::SelectionManager;

/// A panel whose host changes the kernel's selection when a row is made. Nothing is recorded.
class SelectionInsideCallbacks : public testing::TestWithParam<unsigned int> {
protected:
  SelectionInsideCallbacks()
  {
    panel.world->selectionManager = selection;
    panel.Initialise();
    panel.host.onCall = [this](const std::string& line) {
      if (line.starts_with("InstanceCreate(" + trigger + ",") && !isSelected) {
        isSelected = true;
        selection->ApplyInstances(GetParam(), {panel.kernel["b"]}, SelectionManager::OperationSet);
      }
    };
  }
  ~SelectionInsideCallbacks() override
  {
    panel.host.onCall = nullptr;
    panel.gui->Reset();
    panel.gui->Close();
  }

  [[nodiscard]] static std::ptrdiff_t Count(const std::vector<std::string>& calls, const std::string& call)
  {
    return std::count(calls.begin(), calls.end(), call);
  }
  [[nodiscard]] bool IsKnownAsHighlighted() const
  {
    return panel.gui->GetTreeState()->IsAssocHlight(panel.kernel["b"].Get());
  }

  WorldPanel panel{"root[a b c]"};
  du::SmartPtr<memkernel::SelectionManager> selection = du::MakeSmart<memkernel::SelectionManager>(panel.kernel.Get());
  std::string trigger;
  bool isSelected = false;
};

TEST_P(SelectionInsideCallbacks, WhileRowsArePopulated_ReachesTheHostAndLeavesTheRows)
{
  trigger = "a";

  panel.gui->GetTreeState()->PopulateTree(false);

  const std::vector<std::string> calls = panel.host.TakeCalls();
  EXPECT_TRUE(isSelected);
  EXPECT_EQ(Count(calls, "StartTreeUpdate()"), Count(calls, "FinishTreeUpdate()"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "b", "c", "root"));
  if (GetParam() == SelectionManager::SelectionList) {
    EXPECT_THAT(calls, Contains(HasSubstr("SelectItems")).Times(1));
  } else {
    EXPECT_TRUE(IsKnownAsHighlighted());
  }
}

TEST_P(SelectionInsideCallbacks, WhileABurstMakesRows_ReachesTheHostAndLeavesTheRows)
{
  trigger = "d";
  {
    const memkernel::TreeBatch batch(panel.GetTree());
    panel.kernel.Add("root", "d");
    panel.kernel.Add("root", "e");
  }

  const std::vector<std::string> calls = panel.host.TakeCalls();
  EXPECT_TRUE(isSelected);
  EXPECT_EQ(Count(calls, "StartTreeUpdate()"), Count(calls, "FinishTreeUpdate()"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "b", "c", "d", "e", "root"));
  if (GetParam() == SelectionManager::SelectionList) {
    EXPECT_THAT(calls, Contains(HasSubstr("SelectItems")).Times(1));
  } else {
    EXPECT_TRUE(IsKnownAsHighlighted());
  }
}

INSTANTIATE_TEST_SUITE_P(OfEitherList, SelectionInsideCallbacks,
                         testing::Values(SelectionManager::SelectionList, SelectionManager::AssocHlightList));

}  // namespace
