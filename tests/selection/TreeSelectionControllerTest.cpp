#include "guitree/TreeSelectionController.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "guitree/WorldTreeSelectionController.h"
#include "testsupport/RecordingSelectionManager.h"

namespace {

using guitree::TreeSelectionController;
using guitree::WorldTreeSelectionController;
using testsupport::RecordingSelectionManager;
using BaseInstances = std::set<du::SmartPtr<zelk::BaseInstance>>;

static_assert(std::is_abstract_v<TreeSelectionController>);

/// A controller of another kind, which leaves the manager to its base.
class OtherController : public TreeSelectionController {
public:
  using TreeSelectionController::TreeSelectionController;

  unsigned int GetTotalItemCount() override { return 0; }
  void GetSelectedInstances(BaseInstances& /*out*/) override {}
  bool ContainsInstance() override { return false; }
  bool ContainsItem(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) override { return false; }
  void SetItems(const BaseInstances& /*items*/) override {}
  bool IsItemAssocHlighted(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) override { return false; }
  void GetAssocHlightedInstances(BaseInstances& /*out*/) override {}
};

TEST(TreeSelectionController, KeepsItsManagerWhateverTheFlagAndAsksItNothing)
{
  const auto manager = du::MakeSmart<RecordingSelectionManager>();

  EXPECT_EQ(OtherController(manager, true).GetZelkSelectionManager(), manager);
  EXPECT_EQ(OtherController(manager, false).GetZelkSelectionManager(), manager);
  EXPECT_EQ(WorldTreeSelectionController(manager).GetZelkSelectionManager(), manager);
  EXPECT_TRUE(manager->calls.empty());
}

TEST(TreeSelectionController, CopiesShareTheManager)
{
  const auto manager = du::MakeSmart<RecordingSelectionManager>();
  const WorldTreeSelectionController controller(manager);

  const WorldTreeSelectionController copy(controller);
  WorldTreeSelectionController assigned(nullptr);
  assigned = controller;

  EXPECT_EQ(copy.GetZelkSelectionManager(), manager);
  EXPECT_EQ(assigned.GetZelkSelectionManager(), manager);
}

}  // namespace
