// What the calls of a host allow, without a panel: a model has to take it in its stride.

#include <gmock/gmock.h>

#include <QSignalSpy>

#include "Stage.h"

namespace qthosttest {
namespace {

using Base = du::SmartPtr<zelk::BaseInstance>;

class ItemModelProtocol : public testing::Test {
protected:
  void Create(const std::string& name, const std::string& parent = {})
  {
    const Base above = parent.empty() ? Base() : Base(kernel[parent]);
    model.InstanceCreate(Base(kernel[name]), above, {}, false);
  }
  void Remove(const std::string& name, bool isPending = false)
  {
    Base parent;
    kernel[name]->GetBaseParent(parent);
    model.InstanceRemove(Base(kernel[name]), parent, isPending);
  }
  void Populate(const std::vector<std::pair<std::string, std::string>>& rows)
  {
    model.StartTreeUpdate();
    model.ClearTree();
    for (const auto& [name, parent] : rows) {
      Create(name, parent);
    }
    model.RestoreExpandedAfterPopulate();
    model.FinishTreeUpdate();
  }
  void PopulateAll()
  {
    Populate({{"root", ""}, {"plate", "root"}, {"bolt", "plate"}, {"nut", "plate"}, {"rod", "root"}});
  }
  [[nodiscard]] std::string GetText() const { return ReadText(model); }
  [[nodiscard]] QModelIndex FindIndex(const std::string& name) const { return model.FindIndex(kernel[name].Get()); }

  testsupport::NamedTree kernel{"root[plate[bolt nut] rod]"};
  qthost::GuiTreeItemModel model;
  QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(ItemModelProtocol, ParentWithoutARow_LeavesItsChildrenToTheNextAncestor)
{
  Populate({{"root", ""}, {"bolt", "plate"}, {"nut", "plate"}, {"rod", "root"}});

  EXPECT_EQ(GetText(), "root[bolt nut rod]");
}

TEST_F(ItemModelProtocol, RootWithoutARow_LeavesItsChildrenAtTheTop)
{
  Populate({{"plate", "root"}, {"bolt", "plate"}, {"rod", "root"}});

  EXPECT_EQ(GetText(), "plate[bolt] rod");
}

TEST_F(ItemModelProtocol, RowOfAHiddenParentThatComesLater_StandsWhereItsParentWould)
{
  Populate({{"root", ""}, {"rod", "root"}});

  Create("bolt", "plate");

  EXPECT_EQ(GetText(), "root[bolt rod]");
}

TEST_F(ItemModelProtocol, ParentThatGetsItsRowAfterAll_TakesTheNextRows)
{
  model.StartTreeUpdate();
  model.ClearTree();
  Create("root");
  Create("bolt", "plate");
  Create("plate", "root");
  Create("nut", "plate");
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "root[bolt plate[nut]]");
}

TEST_F(ItemModelProtocol, SecondCreateOfARow_MovesItAndWhatIsBelow)
{
  PopulateAll();
  const QSignalSpy moves(&model, &QAbstractItemModel::rowsMoved);
  const QSignalSpy insertions(&model, &QAbstractItemModel::rowsInserted);
  const QPersistentModelIndex bolt = FindIndex("bolt");

  Create("plate", "rod");

  EXPECT_EQ(GetText(), "root[rod[plate[bolt nut]]]");
  EXPECT_EQ(moves.count(), 1);
  EXPECT_EQ(insertions.count(), 0);
  EXPECT_EQ(QModelIndex(bolt), FindIndex("bolt"));
}

TEST_F(ItemModelProtocol, SecondCreateOfARowInItsPlace_OnlyReadsItAgain)
{
  PopulateAll();
  const QSignalSpy moves(&model, &QAbstractItemModel::rowsMoved);
  const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);

  Create("bolt", "plate");

  EXPECT_EQ(GetText(), "root[plate[bolt nut] rod]");
  EXPECT_EQ(moves.count(), 0);
  ASSERT_EQ(changes.count(), 1);
  EXPECT_EQ(changes[0][0].toModelIndex(), FindIndex("bolt"));
}

TEST_F(ItemModelProtocol, SecondCreateInAPopulation_MovesTheRowToTheEnd)
{
  Populate({{"root", ""}, {"plate", "root"}, {"bolt", "plate"}, {"rod", "root"}, {"plate", "root"}, {"nut", "plate"}});

  EXPECT_EQ(GetText(), "root[rod plate[bolt nut]]");
}

TEST_F(ItemModelProtocol, RowThatWouldGoBelowItself_StaysWhereItIs)
{
  PopulateAll();

  Create("plate", "bolt");

  EXPECT_EQ(GetText(), "root[plate[bolt nut] rod]");
}

TEST_F(ItemModelProtocol, RowThatComesTwiceInABatch_IsOne)
{
  Populate({{"root", ""}, {"plate", "root"}, {"rod", "root"}});
  model.StartTreeUpdate();
  Create("bolt", "plate");
  Create("nut", "bolt");
  Create("bolt", "rod");
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "root[plate rod[bolt[nut]]]");
}

TEST_F(ItemModelProtocol, FinishWithoutAStart_DoesNothing)
{
  PopulateAll();
  model.FinishTreeUpdate();
  model.StartTreeUpdate();
  Remove("rod");
  model.FinishTreeUpdate();
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "root[plate[bolt nut]]");
}

TEST_F(ItemModelProtocol, NestedBrackets_TellAtTheEndOfTheOutermost)
{
  Populate({{"root", ""}, {"plate", "root"}});
  const QSignalSpy insertions(&model, &QAbstractItemModel::rowsInserted);
  model.StartTreeUpdate();
  model.StartTreeUpdate();
  Create("bolt", "plate");
  model.FinishTreeUpdate();
  Create("nut", "plate");
  const auto before = insertions.count();
  const std::string textBefore = GetText();
  model.FinishTreeUpdate();

  EXPECT_EQ(before, 0);
  EXPECT_EQ(textBefore, "root[plate]");
  EXPECT_EQ(insertions.count(), 1);
  EXPECT_EQ(GetText(), "root[plate[bolt nut]]");
}

TEST_F(ItemModelProtocol, CallsOutsideOfBrackets_AreToldAtOnce)
{
  Create("root");
  Create("plate", "root");
  Create("bolt", "plate");
  Remove("plate");

  EXPECT_EQ(GetText(), "root");
}

TEST_F(ItemModelProtocol, NullInstances_MakeNoRowAndTakeNone)
{
  PopulateAll();
  guitree::FilteredTree::Node placeholder;

  model.InstanceCreate(Base(), Base(), {}, false);
  model.InstanceCreate(nullptr, {}, false);
  model.InstanceCreate(&placeholder, {}, false);
  model.InstanceRemove(Base(), Base(), false);
  model.FilterNodeCreate(nullptr);
  model.FilterNodeCreate(&placeholder);

  EXPECT_FALSE(model.SetAssocHlight(nullptr, true));
  EXPECT_FALSE(model.FindIndex(nullptr).isValid());
  EXPECT_EQ(GetText(), "root[plate[bolt nut] rod]");
}

TEST_F(ItemModelProtocol, RemovalOfAnInstanceWithoutARow_TakesTheRowsBelowIt)
{
  Populate({{"root", ""}, {"bolt", "plate"}, {"nut", "plate"}, {"rod", "root"}});

  Remove("plate");

  EXPECT_EQ(GetText(), "root[rod]");
}

TEST_F(ItemModelProtocol, RemovalInAList_TakesTheRowsOfAllBelowInAsFewRunsAsThereAre)
{
  Populate({{"root", ""}, {"nut", "root"}, {"rod", "root"}, {"bolt", "root"}, {"plate", "root"}});
  const QSignalSpy removals(&model, &QAbstractItemModel::rowsRemoved);

  Remove("plate");

  EXPECT_EQ(GetText(), "root[rod]");
  EXPECT_EQ(removals.count(), 2);
}

TEST_F(ItemModelProtocol, RemovalInsideAPopulation_LeavesNoRow)
{
  model.StartTreeUpdate();
  model.ClearTree();
  Create("root");
  Create("plate", "root");
  Create("bolt", "plate");
  Remove("plate");
  Create("rod", "root");
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "root[rod]");
}

TEST_F(ItemModelProtocol, RemovalOfWhatTheSameBatchHasBrought_LeavesNoRow)
{
  Populate({{"root", ""}});
  model.StartTreeUpdate();
  Create("plate", "root");
  Create("bolt", "plate");
  Remove("bolt", true);
  Remove("plate", true);
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "root");
}

// No map is looked into by its keys, which may be the addresses of what has ended.
TEST_F(ItemModelProtocol, KeysOfChanges_AreNeverFollowed)
{
  PopulateAll();
  const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
  const auto* const nowhere = reinterpret_cast<const zelk::BaseInstance*>(std::uintptr_t{8});
  qthost::GuiTreeItemModel::VisibleMap states;
  qthost::GuiTreeItemModel::ChangeMap stateChanges;
  qthost::GuiTreeItemModel::ChangeMap iconChanges;
  stateChanges[nowhere] = 18;
  stateChanges[kernel["bolt"].Get()] = 18;
  iconChanges[nowhere] = 28;
  iconChanges[kernel["nut"].Get()] = 28;

  model.UpdateVisAndTypeIconChanges(&states, &stateChanges, nullptr, &iconChanges);

  ASSERT_EQ(changes.count(), 1);
  EXPECT_EQ(changes[0][0].toModelIndex(), FindIndex("bolt"));
  EXPECT_EQ(changes[0][1].toModelIndex().row(), FindIndex("nut").row());
}

TEST_F(ItemModelProtocol, RefreshOfAllWithoutAScene_IsTaken)
{
  PopulateAll();
  const QSignalSpy looks(&model, &qthost::GuiTreeItemModel::LooksChanged);

  model.UpdateVisAndTypeIcons(nullptr, nullptr);
  model.UpdateVisAndTypeIconChanges(nullptr, nullptr, nullptr, nullptr);

  EXPECT_EQ(looks.count(), 1);
}

TEST_F(ItemModelProtocol, ClearTreeAsTheLastWord_LeavesAnEmptyModel)
{
  PopulateAll();
  model.StartTreeUpdate();
  model.ClearTree();
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "");
  EXPECT_EQ(model.GetRowCount(), 0U);
  EXPECT_FALSE(FindIndex("root").isValid());
}

TEST_F(ItemModelProtocol, ResetInsideABracket_EndsIt)
{
  PopulateAll();
  model.StartTreeUpdate();
  model.ClearTree();
  Create("root");
  model.Reset();

  EXPECT_EQ(GetText(), "");
  Create("rod");
  EXPECT_EQ(GetText(), "rod");
}

TEST_F(ItemModelProtocol, SecondPopulationInsideTheFirst_IsOneReset)
{
  const QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
  model.StartTreeUpdate();
  model.ClearTree();
  Create("root");
  Create("plate", "root");
  model.StartTreeUpdate();
  model.ClearTree();
  Create("root");
  Create("rod", "root");
  model.FinishTreeUpdate();
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "root[rod]");
  EXPECT_EQ(resets.count(), 1);
}

TEST_F(ItemModelProtocol, RowsAreHeld_UntilTheyGo)
{
  PopulateAll();
  const Base bolt(kernel["bolt"]);
  const int held = bolt->AddReference(nullptr);
  model.ClearTree();

  EXPECT_EQ(bolt->RemoveReference(nullptr), held - 2);
}

}  // namespace
}  // namespace qthosttest
