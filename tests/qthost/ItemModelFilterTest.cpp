#include <gmock/gmock.h>

#include <QSignalSpy>

#include "FilterHold.h"
#include "guitree/TreeController.h"

namespace qthosttest {
namespace {

using qthost::GuiTreeItemModel;
using testing::ElementsAre;

class ItemModelFilter : public testing::Test {
protected:
  void SetUp() override { stage.Initialise(); }
  /// All rows stand then, and the result comes on top of them.
  void SwitchFilterOffAtWork(const std::string& text)
  {
    stage.checksProtocol = false;
    stage.GetFilter().SetText(text);
    stage.state->PopulateTree(false);
    stage.GetFilter().SetText("");
    stage.state->PopulateTree(false);
  }

  Stage stage{"root[plate[bolt nut] frame[bolt bar] rod]"};
};

TEST_F(ItemModelFilter, Result_HasTheMatchesAndWhatIsAboveThem)
{
  stage.Filter("bolt");

  EXPECT_EQ(stage.GetText(), "root[plate[bolt] frame[bolt]]");
  EXPECT_EQ(stage.model.GetResultNote(), GuiTreeItemModel::ResultNote::None);
}

TEST_F(ItemModelFilter, FilterThatEnds_GivesAllRowsBack)
{
  stage.Filter("bolt");

  stage.EndFilter();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut] frame[bolt bar] rod]");
}

TEST_F(ItemModelFilter, List_StandsBelowTheRoot)
{
  stage.GetFilter().listMode = 1;

  stage.Filter("b");

  EXPECT_EQ(stage.model.rowCount(stage.FindIndex("root")), 3);
  EXPECT_EQ(stage.model.GetRowCount(), 4U);
}

TEST_F(ItemModelFilter, ResultWithoutAMatch_SaysSo)
{
  const QSignalSpy shown(&stage.model, &GuiTreeItemModel::ResultShown);

  stage.Filter("wheel");

  EXPECT_EQ(stage.GetText(), "root");
  EXPECT_EQ(stage.model.GetResultNote(), GuiTreeItemModel::ResultNote::NoMatch);
  EXPECT_EQ(shown.count(), 1);
}

TEST_F(ItemModelFilter, FilterAtWork_IsToldByItsBeginAndEnd)
{
  QSignalSpy calculating(&stage.model, &GuiTreeItemModel::CalculatingChanged);

  stage.Filter("bolt");

  ASSERT_EQ(calculating.count(), 2);
  EXPECT_TRUE(calculating[0][0].toBool());
  EXPECT_FALSE(calculating[1][0].toBool());
  EXPECT_FALSE(stage.model.IsCalculating());
}

TEST_F(ItemModelFilter, CancelWithoutAFilter_AnswersNo)
{
  EXPECT_FALSE(stage.model.CancelFilter());
  stage.Filter("bolt");
  EXPECT_FALSE(stage.model.CancelFilter());
}

TEST_F(ItemModelFilter, FilterThatIsCancelled_SaysSo)
{
  EXPECT_TRUE(FilterAndCancelAtWork(stage, "bolt"));

  EXPECT_EQ(stage.model.GetResultNote(), GuiTreeItemModel::ResultNote::Cancelled);
}

TEST_F(ItemModelFilter, Placeholder_IsARowThatHasChildrenToFetch)
{
  FilterAndCancelAtWork(stage, "bolt");

  const QModelIndex root = stage.FindIndex("root");
  EXPECT_EQ(stage.GetText(), "root[...]");
  EXPECT_TRUE(stage.model.hasChildren(root));
  EXPECT_EQ(stage.model.rowCount(root), 0);
  EXPECT_TRUE(stage.model.canFetchMore(root));
}

TEST_F(ItemModelFilter, PlaceholderThatIsFetched_BecomesItsRows)
{
  FilterAndCancelAtWork(stage, "bolt");
  const QSignalSpy insertions(&stage.model, &QAbstractItemModel::rowsInserted);

  stage.model.fetchMore(stage.FindIndex("root"));

  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut] frame[bolt bar] rod]");
  EXPECT_FALSE(stage.model.canFetchMore(stage.FindIndex("root")));
  EXPECT_EQ(insertions.count(), 1);
}

TEST_F(ItemModelFilter, PlaceholderWhileAFilterIsAtWork_CannotBeFetched)
{
  FilterAndCancelAtWork(stage, "bolt");
  const QPersistentModelIndex root = stage.FindIndex("root");
  stage.model.setProperty("asked", stage.model.canFetchMore(root));
  stage.GetFilter().SetText("nut");
  stage.state->PopulateTree(false);

  EXPECT_TRUE(stage.model.property("asked").toBool());
  EXPECT_FALSE(root.isValid());
  EXPECT_FALSE(stage.model.canFetchMore(QModelIndex()));
  stage.Settle();
}

TEST_F(ItemModelFilter, RowsWithoutAPlaceholder_HaveNothingToFetch)
{
  stage.model.fetchMore(stage.FindIndex("root"));
  stage.model.fetchMore(QModelIndex());

  EXPECT_FALSE(stage.model.canFetchMore(stage.FindIndex("root")));
  EXPECT_FALSE(stage.model.hasChildren(stage.FindIndex("rod")));
}

// The job of a filter that is switched off ends with a result all the same.
TEST_F(ItemModelFilter, LateResult_IsWrittenOnTopOfTheRows)
{
  SwitchFilterOffAtWork("bar");
  const std::string before = stage.GetText();
  const QSignalSpy resets(&stage.model, &QAbstractItemModel::modelReset);

  stage.Settle();

  EXPECT_EQ(before, "root[plate[bolt nut] frame[bolt bar] rod]");
  EXPECT_EQ(stage.GetText(), before);
  EXPECT_EQ(resets.count(), 1);
}

TEST_F(ItemModelFilter, LateResultWithoutAMatch_IsNotSaidOverTheRows)
{
  SwitchFilterOffAtWork("wheel");

  stage.Settle();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut] frame[bolt bar] rod]");
  EXPECT_EQ(stage.model.GetResultNote(), GuiTreeItemModel::ResultNote::None);
}

TEST_F(ItemModelFilter, LateResultThatIsCancelled_LeavesNoPlaceholder)
{
  SwitchFilterOffAtWork("bar");
  EXPECT_TRUE(stage.model.CancelFilter());

  stage.Settle();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut] frame[bolt bar] rod]");
  EXPECT_EQ(stage.model.GetResultNote(), GuiTreeItemModel::ResultNote::None);
}

TEST_F(ItemModelFilter, EditAfterAResultThatMadeNoRows_IsNoReset)
{
  stage.model.SetTreeCalculating(false);
  const QSignalSpy resets(&stage.model, &QAbstractItemModel::modelReset);

  stage.kernel.InsertBefore("nut", "washer");
  stage.Settle();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt washer nut] frame[bolt bar] rod]");
  EXPECT_EQ(resets.count(), 0);
}

TEST_F(ItemModelFilter, PanelOutOfSight_IsFilledWhenItIsSeenAgain)
{
  stage.model.SetInSight(false);
  stage.kernel.Add("root", "wheel");
  stage.state->PopulateTree(true);
  const std::string before = stage.GetText();

  stage.model.SetInSight(true);

  EXPECT_EQ(before, "");
  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut] frame[bolt bar] rod wheel]");
}

}  // namespace
}  // namespace qthosttest
