#include <gmock/gmock.h>

#include <QPersistentModelIndex>
#include <QSignalSpy>

#include "Stage.h"

namespace qthosttest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The signals by which rows come and go, as text: "insert root 1-2".
class RowSignals {
public:
  explicit RowSignals(const qthost::GuiTreeItemModel& model)
  {
    const auto note = [this](const char* what) {
      return [this, what](const QModelIndex& parent, int first, int last) {
        const std::string name = parent.isValid() ? parent.data().toString().toStdString() : "top";
        list.push_back(std::string(what) + ' ' + name + ' ' + std::to_string(first) + '-' + std::to_string(last));
      };
    };
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, &m_context, note("insert"));
    QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &m_context, note("remove"));
    QObject::connect(&model, &QAbstractItemModel::modelReset, &m_context, [this] { list.emplace_back("reset"); });
    QObject::connect(&model, &QAbstractItemModel::layoutChanged, &m_context, [this] { list.emplace_back("layout"); });
    QObject::connect(&model, &QAbstractItemModel::rowsMoved, &m_context,
                     [this](const QModelIndex&, int first, int, const QModelIndex&, int to) {
                       list.push_back("move " + std::to_string(first) + " to " + std::to_string(to));
                     });
  }

  std::vector<std::string> list;

private:
  QObject m_context;
};

class ItemModelEdits : public testing::Test {
protected:
  void SetUp() override { stage.Initialise(); }

  Stage stage{"root[plate[bolt nut] rod]"};
};

TEST_F(ItemModelEdits, NewInstance_IsOneInsertedRow)
{
  const RowSignals heard(stage.model);

  stage.kernel.Add("plate", "washer");
  stage.Settle();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut washer] rod]");
  EXPECT_THAT(heard.list, ElementsAre("insert plate 2-2"));
}

TEST_F(ItemModelEdits, NewInstanceInFrontOfAnother_IsInsertedThere)
{
  const RowSignals heard(stage.model);

  stage.kernel.InsertBefore("nut", "washer");
  stage.Settle();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt washer nut] rod]");
  EXPECT_THAT(heard.list, ElementsAre("insert plate 1-1"));
}

TEST_F(ItemModelEdits, NewNeighboursOfOneBatch_AreInsertedTogether)
{
  const RowSignals heard(stage.model);
  {
    const memkernel::TreeBatch batch(stage.tree);
    stage.kernel.Add("plate", "washer1");
    stage.kernel.Add("plate", "washer2");
    stage.kernel.Add("plate", "washer3");
  }
  stage.Settle();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut washer1 washer2 washer3] rod]");
  EXPECT_THAT(heard.list, ElementsAre("insert plate 2-4"));
}

TEST_F(ItemModelEdits, NewBranch_IsOneInsertedRowWithAllBelowIt)
{
  const RowSignals heard(stage.model);
  {
    const memkernel::TreeBatch batch(stage.tree);
    stage.kernel.Add("root", "frame");
    stage.kernel.Add("frame", "bar1");
    stage.kernel.Add("bar1", "pin");
    stage.kernel.InsertBefore("bar1", "bar0");
  }
  stage.Settle();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut] rod frame[bar0 bar1[pin]]]");
  EXPECT_THAT(heard.list, ElementsAre("insert root 2-2"));
}

TEST_F(ItemModelEdits, BatchAtSeveralPlaces_IsOneInsertionEach)
{
  const RowSignals heard(stage.model);
  {
    const memkernel::TreeBatch batch(stage.tree);
    stage.kernel.Add("plate", "washer1");
    stage.kernel.InsertBefore("bolt", "washer2");
    stage.kernel.InsertBefore("washer1", "washer3");
    stage.kernel.Add("root", "frame");
  }
  stage.Settle();

  EXPECT_EQ(stage.GetText(), "root[plate[washer2 bolt nut washer3 washer1] rod frame]");
  EXPECT_THAT(heard.list, ElementsAre("insert plate 2-2", "insert plate 0-0", "insert plate 3-3", "insert root 2-2"));
}

TEST_F(ItemModelEdits, RemovedInstance_IsOneRemovedRowAheadOfThePopulation)
{
  const RowSignals heard(stage.model);

  stage.Remove("plate");
  stage.Settle();

  EXPECT_EQ(stage.GetText(), "root[rod]");
  EXPECT_THAT(heard.list, ElementsAre("remove root 0-0", "reset"));
}

TEST_F(ItemModelEdits, NeighboursThatAreRemovedAtOnce_GoWithTheRowsOfAllBelowThem)
{
  const RowSignals heard(stage.model);

  stage.Remove("root");
  stage.Settle();

  EXPECT_EQ(stage.GetText(), "");
  EXPECT_THAT(heard.list, ElementsAre("remove top 0-0", "reset"));
}

TEST_F(ItemModelEdits, IndexesThatAreHeld_FollowTheirRows)
{
  const QPersistentModelIndex nut = stage.FindIndex("nut");
  const QPersistentModelIndex rod = stage.FindIndex("rod");
  {
    const memkernel::TreeBatch batch(stage.tree);
    stage.kernel.InsertBefore("bolt", "washer1");
    stage.kernel.InsertBefore("plate", "frame");
    stage.kernel.Add("plate", "washer2");
  }
  stage.Settle();

  EXPECT_EQ(QModelIndex(nut), stage.FindIndex("nut"));
  EXPECT_EQ(nut.row(), 2);
  EXPECT_EQ(QModelIndex(rod), stage.FindIndex("rod"));
  EXPECT_EQ(rod.row(), 2);
}

TEST_F(ItemModelEdits, MoreThanAPanelAppliesInPlace_IsOneReset)
{
  const RowSignals heard(stage.model);
  {
    const memkernel::TreeBatch batch(stage.tree);
    for (int i = 0; i < 201; ++i) {
      stage.kernel.Add("plate", "washer");
    }
  }
  stage.Settle();

  EXPECT_EQ(stage.model.rowCount(stage.FindIndex("plate")), 203);
  EXPECT_EQ(heard.list.back(), "reset");
}

TEST_F(ItemModelEdits, RenamedInstance_ChangesTheDataOfItsRowAlone)
{
  const QSignalSpy changes(&stage.model, &QAbstractItemModel::dataChanged);

  stage.tree.Rename(stage["bolt"], "screw");
  stage.Settle();

  ASSERT_EQ(changes.count(), 1);
  EXPECT_EQ(changes[0][0].toModelIndex(), stage.FindIndex("bolt"));
  EXPECT_EQ(changes[0][1].toModelIndex().row(), stage.FindIndex("bolt").row());
  EXPECT_EQ(stage.GetText(), "root[plate[screw nut] rod]");
}

TEST_F(ItemModelEdits, RenamedProduct_HasAllRowsReadAgain)
{
  const QSignalSpy looks(&stage.model, &qthost::GuiTreeItemModel::LooksChanged);

  stage.tree.RenameProduct(stage["bolt"]->GetProduct(), "screw");
  stage.Settle();

  EXPECT_GE(looks.count(), 1);
  EXPECT_EQ(stage.GetText(), "root[plate[screw nut] rod]");
}

TEST_F(ItemModelEdits, PanelThatIsClosed_LeavesARowOfNothing)
{
  stage.Close();

  EXPECT_EQ(stage.GetText(), "");
  EXPECT_EQ(stage.model.GetPanel(), nullptr);
}

}  // namespace
}  // namespace qthosttest
