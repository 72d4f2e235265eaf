#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "guitree/WorldTreeSelectionController.h"
#include "memkernel/Tree.h"
#include "testsupport/DisplaySwitches.h"
#include "testsupport/PlainBaseInstance.h"
#include "testsupport/RecordingSelectionManager.h"

namespace {

using guitree::WorldTreeSelectionController;
using testing::ElementsAre;
using testsupport::DisplaySwitches;
using testsupport::PlainBaseInstance;
using testsupport::RecordingSelectionManager;
using BaseInstances = std::set<du::SmartPtr<zelk::BaseInstance>>;
using Instances = std::set<du::SmartPtr<zelk::Instance>>;

/// A group of three siblings, a group of two, and one that stands alone. Both forms of `SetItems` are put to each test.
class SetItems : public testing::TestWithParam<bool> {
protected:
  [[nodiscard]] du::SmartPtr<memkernel::Instance> Add(const du::SmartPtr<memkernel::Product>& product,
                                                      const char* name) const
  {
    return tree->AddChild(tree->GetRootInstance(), product, name);
  }
  void Set(const std::vector<du::SmartPtr<zelk::Instance>>& items)
  {
    if (GetParam()) {
      controller.SetItems(BaseInstances(items.begin(), items.end()));
    } else {
      controller.SetItems(Instances(items.begin(), items.end()));
    }
  }

  du::SmartPtr<memkernel::Tree> tree = du::MakeSmart<memkernel::Tree>();
  du::SmartPtr<memkernel::Product> bolt = tree->CreateProduct({.name = "bolt"});
  du::SmartPtr<memkernel::Product> nut = tree->CreateProduct({.name = "nut"});
  du::SmartPtr<memkernel::Instance> root = tree->CreateRoot(tree->CreateProduct({.name = "root"}));
  du::SmartPtr<memkernel::Instance> bolt1 = Add(bolt, "bolt1");
  du::SmartPtr<memkernel::Instance> nut1 = Add(nut, "nut1");
  du::SmartPtr<memkernel::Instance> bolt2 = Add(bolt, "bolt2");
  du::SmartPtr<memkernel::Instance> nut2 = Add(nut, "nut2");
  du::SmartPtr<memkernel::Instance> bolt3 = Add(bolt, "bolt3");
  du::SmartPtr<memkernel::Instance> alone = Add(tree->CreateProduct({.name = "alone"}), "alone");
  du::SmartPtr<RecordingSelectionManager> manager = du::MakeSmart<RecordingSelectionManager>();
  WorldTreeSelectionController controller{manager};
};

INSTANTIATE_TEST_SUITE_P(OfBothForms, SetItems, testing::Bool(), [](const testing::TestParamInfo<bool>& form) {
  return form.param ? "OverBaseInstances" : "OverInstances";
});

TEST_P(SetItems, OfAnEmptySetClearsTheSelectionByOneCallWithAnEmptySet)
{
  Set({});

  EXPECT_THAT(manager->calls, ElementsAre("ApplyItems(0, [], 4)"));
}

TEST_P(SetItems, SetsAllInOneCall)
{
  Set({alone, root, nut2});

  EXPECT_THAT(manager->calls, ElementsAre("ApplyItems(0, [alone nut2 root], 4)"));
}

TEST_P(SetItems, WithGroupsOpen_AFirstSiblingSelectsOnlyItself)
{
  Set({bolt1});

  EXPECT_THAT(manager->calls, ElementsAre("ApplyItems(0, [bolt1], 4)"));
}

TEST_P(SetItems, WithGroupsCollapsed_AFirstSiblingSelectsItsWholeGroup)
{
  const DisplaySwitches switches(true);

  Set({bolt1});

  EXPECT_THAT(manager->calls, ElementsAre("ApplyItems(0, [bolt1 bolt2 bolt3], 4)"));
}

TEST_P(SetItems, WithGroupsCollapsed_AFirstSiblingAndAnotherOfItsGroupGiveOneItemEach)
{
  const DisplaySwitches switches(true);

  Set({bolt1, bolt3});

  EXPECT_THAT(manager->calls, ElementsAre("ApplyItems(0, [bolt1 bolt2 bolt3], 4)"));
}

TEST_P(SetItems, WithGroupsCollapsed_ALaterSiblingSelectsItselfAloneAlthoughItHasNoRow)
{
  const DisplaySwitches switches(true);

  Set({bolt2, nut2});

  EXPECT_THAT(manager->calls, ElementsAre("ApplyItems(0, [bolt2 nut2], 4)"));
}

TEST_P(SetItems, WithGroupsCollapsed_EachFirstSiblingBringsItsGroupAndWhatHasNoGroupItself)
{
  const DisplaySwitches switches(true);

  Set({alone, nut1, bolt1});

  EXPECT_THAT(manager->calls, ElementsAre("ApplyItems(0, [alone bolt1 bolt2 bolt3 nut1 nut2], 4)"));
}

TEST_P(SetItems, PassesOverNull)
{
  Set({nullptr, alone});

  EXPECT_THAT(manager->calls, ElementsAre("ApplyItems(0, [alone], 4)"));
}

TEST_P(SetItems, WrapsEachInstanceInAnItemOfItsOwnClass)
{
  Set({alone});

  ASSERT_EQ(manager->appliedItems.size(), 1U);
  const auto item = du::DynamicCast<zelk::ObjectSelectionItem>(*manager->appliedItems.begin());
  ASSERT_TRUE(item);
  EXPECT_EQ(item->GetObject(), alone);
}

TEST_P(SetItems, ReadsTheSwitchAtEachCall)
{
  const DisplaySwitches switches(true);
  Set({nut1});
  guitree::WorldTreeState::SetIsCollapsingInstances(false);

  Set({nut1});

  EXPECT_THAT(manager->calls, ElementsAre("ApplyItems(0, [nut1 nut2], 4)", "ApplyItems(0, [nut1], 4)"));
}

TEST_P(SetItems, SelectsAlsoWhatHasNoRow)
{
  tree->SetFlags(alone, memkernel::Instance3dSymbol, true);

  Set({alone});

  EXPECT_THAT(manager->calls, ElementsAre("ApplyItems(0, [alone], 4)"));
}

class SetItemsOverBaseInstances : public SetItems {};

INSTANTIATE_TEST_SUITE_P(OfOneForm, SetItemsOverBaseInstances, testing::Values(true));

TEST_P(SetItemsOverBaseInstances, PassesOverWhatIsNoInstance)
{
  const du::SmartPtr<zelk::BaseInstance> other = du::MakeSmart<PlainBaseInstance>("other");

  controller.SetItems(BaseInstances{other, alone});
  controller.SetItems(BaseInstances{other});

  EXPECT_THAT(manager->calls, ElementsAre("ApplyItems(0, [alone], 4)", "ApplyItems(0, [], 4)"));
}

}  // namespace
