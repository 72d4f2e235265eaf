#include <gmock/gmock.h>

#include <QSignalSpy>

#include "Stage.h"
#include "guitree/TypeIcon.h"

namespace qthosttest {
namespace {

using qthost::GuiTreeItemModel;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class ItemModelLook : public testing::Test {
protected:
  void SetUp() override { stage.Initialise(); }
  [[nodiscard]] QVariant Read(const std::string& name, int column, int role) const
  {
    return stage.FindIndex(name).siblingAtColumn(column).data(role);
  }
  [[nodiscard]] QVariant ReadCheck(const std::string& name) const
  {
    return Read(name, GuiTreeItemModel::VisibleColumn, Qt::CheckStateRole);
  }
  void SetVisible(const std::string& name, bool isVisible)
  {
    stage.scene->SetVisible(stage.GetShape(name), isVisible);
    stage.Settle();
  }

  Stage stage{"root[plate[bolt nut] rod]"};
};

TEST_F(ItemModelLook, WithoutAScene_RowsHaveNamesAlone)
{
  EXPECT_EQ(Read("bolt", 0, Qt::DisplayRole).toString(), "bolt");
  EXPECT_FALSE(ReadCheck("bolt").isValid());
  EXPECT_FALSE(Read("bolt", 0, GuiTreeItemModel::TypeIconRole).isValid());
  EXPECT_FALSE(Read("bolt", 0, GuiTreeItemModel::VisibleStateRole).isValid());
  EXPECT_EQ(Read("bolt", 0, Qt::AccessibleTextRole).toString(), "bolt");
}

TEST_F(ItemModelLook, VisibleState_IsCheckedUncheckedOrMixed)
{
  stage.ShowScene();
  SetVisible("bolt", false);

  EXPECT_EQ(ReadCheck("bolt"), Qt::Unchecked);
  EXPECT_EQ(ReadCheck("nut"), Qt::Checked);
  EXPECT_EQ(ReadCheck("plate"), Qt::PartiallyChecked);
  EXPECT_EQ(ReadCheck("rod"), Qt::Checked);
}

TEST_F(ItemModelLook, ChangeInTheScene_IsToldForTheRowsThatChange)
{
  stage.ShowScene();
  const QSignalSpy looks(&stage.model, &GuiTreeItemModel::LooksChanged);
  std::vector<std::string> changed;
  QObject::connect(&stage.model, &QAbstractItemModel::dataChanged, &stage.model,
                   [&](const QModelIndex& first, const QModelIndex& last) {
                     for (int row = first.row(); row <= last.row(); ++row) {
                       changed.push_back(first.siblingAtRow(row).data().toString().toStdString());
                     }
                   });

  SetVisible("bolt", false);

  EXPECT_THAT(changed, UnorderedElementsAre("bolt", "plate", "root"));
  EXPECT_EQ(looks.count(), 0);
}

TEST_F(ItemModelLook, ChangeOfNeighbours_IsOneRange)
{
  stage.ShowScene();
  const QSignalSpy changes(&stage.model, &QAbstractItemModel::dataChanged);
  {
    const memkernel::ShapeSceneBatch batch(*stage.scene);
    stage.scene->SetVisible(stage.GetShape("bolt"), false);
    stage.scene->SetVisible(stage.GetShape("nut"), false);
  }
  stage.Settle();

  // The two, and one for each level above.
  EXPECT_EQ(changes.count(), 3);
}

TEST_F(ItemModelLook, NewScene_HasAllRowsPaintedAnewByOneRangeOfTheTopmost)
{
  const QSignalSpy looks(&stage.model, &GuiTreeItemModel::LooksChanged);
  const QSignalSpy changes(&stage.model, &QAbstractItemModel::dataChanged);

  stage.ShowScene();

  EXPECT_GE(looks.count(), 1);
  EXPECT_EQ(changes.count(), looks.count());
}

TEST_F(ItemModelLook, ChangesAtManyPlaces_HaveAllRowsPaintedAnew)
{
  std::string tree = "root[";
  for (int i = 0; i < 100; ++i) {
    tree += "group" + std::to_string(i) + "[part" + std::to_string(i) + "] ";
  }
  Stage large(tree + "]");
  large.Initialise();
  large.ShowScene();
  const QSignalSpy looks(&large.model, &GuiTreeItemModel::LooksChanged);
  const QSignalSpy changes(&large.model, &QAbstractItemModel::dataChanged);
  {
    const memkernel::ShapeSceneBatch batch(*large.scene);
    for (int i = 0; i < 100; ++i) {
      large.scene->SetVisible(large.GetShape("part" + std::to_string(i)), false);
    }
  }
  large.Settle();

  EXPECT_EQ(looks.count(), 1);
  EXPECT_EQ(changes.count(), 1);
}

TEST_F(ItemModelLook, TypeIcon_IsThatOfThePanel)
{
  stage.ShowScene();

  EXPECT_EQ(Read("bolt", 0, GuiTreeItemModel::TypeIconRole).toInt(), guitree::IconNoSource + 1);
  EXPECT_EQ(Read("bolt", 0, GuiTreeItemModel::ComparedRole).toInt(), 0);
  EXPECT_FALSE(Read("bolt", 0, GuiTreeItemModel::IssueRole).toBool());
}

TEST_F(ItemModelLook, ShapeThatHasFailed_IsAnIssueAndSaidInWords)
{
  stage.ShowScene();
  const auto shape = du::MakeSmart<memkernel::Shape>(nullptr, zelk::ShapeDataFailed);
  const auto gear = stage.tree.AddChild(stage["root"], stage.tree.CreateProduct({.name = "gear", .shape = shape}));
  stage.scene->CreateShapeInstance(gear);
  stage.Settle();

  const QModelIndex index = stage.model.FindIndex(gear.Get());
  EXPECT_TRUE(index.data(GuiTreeItemModel::IssueRole).toBool());
  EXPECT_EQ(index.data(Qt::ToolTipRole).toString().toStdString(), "gear, hidden, shape failed");
}

TEST_F(ItemModelLook, IconProvider_IsAskedWithTheNumberOfTheIcon)
{
  std::vector<int> asked;
  stage.ShowScene();
  const QVariant without = Read("bolt", 0, Qt::DecorationRole);
  stage.model.SetIconProvider([&](int icon) {
    asked.push_back(icon);
    return QIcon();
  });
  asked.clear();

  EXPECT_FALSE(without.isValid());
  EXPECT_TRUE(Read("bolt", 0, Qt::DecorationRole).canConvert<QIcon>());
  EXPECT_FALSE(Read("bolt", 1, Qt::DecorationRole).isValid());
  EXPECT_THAT(asked, ElementsAre(guitree::IconNoSource + 1));
}

TEST_F(ItemModelLook, VisibleStateWithASetter_CanBeChecked)
{
  stage.ShowScene();
  const QModelIndex bolt = stage.FindIndex("bolt").siblingAtColumn(GuiTreeItemModel::VisibleColumn);
  const bool couldBefore = bolt.flags().testFlag(Qt::ItemIsUserCheckable);
  const bool wasSetBefore = stage.model.setData(bolt, Qt::Unchecked, Qt::CheckStateRole);
  stage.model.SetVisibilitySetter([this](const GuiTreeItemModel::Instance& instance, bool isVisible) {
    return stage.scene->SetVisible(stage.scene->FindShapeInstance(dynamic_cast<const zelk::Instance*>(instance.Get())),
                                   isVisible);
  });

  EXPECT_TRUE(stage.model.setData(bolt, Qt::Unchecked, Qt::CheckStateRole));
  stage.Settle();

  EXPECT_FALSE(couldBefore);
  EXPECT_FALSE(wasSetBefore);
  EXPECT_TRUE(bolt.flags().testFlag(Qt::ItemIsUserCheckable));
  EXPECT_EQ(ReadCheck("bolt"), Qt::Unchecked);
  EXPECT_FALSE(stage.GetShape("bolt")->IsVisible());
  EXPECT_FALSE(stage.model.setData(bolt, "screw", Qt::EditRole));
}

TEST_F(ItemModelLook, PropertyColumns_ShowTheTextsOfTheProperties)
{
  stage.tree.SetProperty(stage["bolt"], "Data", "Material", "steel");
  stage.Settle();

  stage.model.SetPropertyColumns({{"Data", "Material"}, {"", "Part ID"}});

  EXPECT_EQ(stage.model.columnCount(), 4);
  EXPECT_EQ(Read("bolt", 2, Qt::DisplayRole).toString(), "steel");
  EXPECT_EQ(Read("nut", 2, Qt::DisplayRole).toString(), "");
  EXPECT_NE(Read("nut", 3, Qt::DisplayRole).toString(), "");
  EXPECT_EQ(stage.model.headerData(2, Qt::Horizontal).toString(), "Material");
  EXPECT_EQ(stage.model.headerData(0, Qt::Horizontal).toString(), "Name");
  stage.model.SetPropertyColumns({});
  EXPECT_EQ(stage.model.columnCount(), 2);
}

TEST_F(ItemModelLook, AssociatedHighlight_IsARoleOfItsRow)
{
  const auto list = zelk::SelectionManager::AssocHlightList;
  stage.world->GetMemSelectionManager().ApplyInstances(list, {stage["bolt"]}, zelk::SelectionManager::OperationAdd);
  stage.Settle();
  const bool wasOn = Read("bolt", 0, GuiTreeItemModel::AssociatedRole).toBool();
  const QString words = Read("bolt", 0, Qt::AccessibleTextRole).toString();
  const bool wasUnderlined = Read("bolt", 0, Qt::FontRole).value<QFont>().underline();
  stage.world->GetMemSelectionManager().ApplyInstances(list, {stage["bolt"]}, zelk::SelectionManager::OperationRemove);
  stage.Settle();

  EXPECT_TRUE(wasOn);
  EXPECT_EQ(words, "bolt, highlighted");
  EXPECT_TRUE(wasUnderlined);
  EXPECT_FALSE(Read("bolt", 0, Qt::FontRole).isValid());
  EXPECT_FALSE(Read("bolt", 0, GuiTreeItemModel::AssociatedRole).toBool());
}

TEST_F(ItemModelLook, AfterTheEndOfThePanel_RowsHaveNamesAlone)
{
  stage.ShowScene();
  stage.gui->Close();
  const bool isKnownAfterClose = ReadCheck("bolt").isValid();
  const bool isThere = stage.FindIndex("bolt").isValid();
  // Not reset: the rows stay.
  stage.gui.Reset();

  EXPECT_FALSE(isKnownAfterClose);
  EXPECT_TRUE(isThere);
  EXPECT_EQ(stage.model.GetPanel(), nullptr);
  EXPECT_EQ(Read("bolt", 0, Qt::DisplayRole).toString(), "bolt");
  EXPECT_FALSE(ReadCheck("bolt").isValid());
  EXPECT_FALSE(stage.model.canFetchMore(stage.FindIndex("root")));
}

}  // namespace
}  // namespace qthosttest
