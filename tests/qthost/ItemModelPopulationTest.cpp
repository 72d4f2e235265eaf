#include <gmock/gmock.h>

#include <QSignalSpy>

#include "Stage.h"

namespace qthosttest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ItemModelPopulation, Initialise_GivesTheRowsOfTheTreeInOneReset)
{
  Stage stage("root[plate[bolt nut] rod]");
  const QSignalSpy resets(&stage.model, &QAbstractItemModel::modelReset);
  const QSignalSpy insertions(&stage.model, &QAbstractItemModel::rowsInserted);

  stage.Initialise();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut] rod]");
  EXPECT_EQ(stage.model.GetRowCount(), 5U);
  EXPECT_EQ(resets.count(), 1);
  EXPECT_EQ(insertions.count(), 0);
}

TEST(ItemModelPopulation, Filter_GivesItsResultInOneReset)
{
  Stage stage("root[plate[bolt nut] rod]");
  stage.Initialise();
  const QSignalSpy resets(&stage.model, &QAbstractItemModel::modelReset);
  const QSignalSpy insertions(&stage.model, &QAbstractItemModel::rowsInserted);

  stage.Filter("bolt");

  EXPECT_EQ(stage.GetText(), "root[plate[bolt]]");
  // One empties the model when the filter begins.
  EXPECT_EQ(resets.count(), 2);
  EXPECT_EQ(insertions.count(), 0);
}

}  // namespace
}  // namespace qthosttest
