#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <set>

#include "support/NestedFile.h"
#include "support/Stage.h"

namespace {

using testing::IsEmpty;
using viewertest::s_hinge;
using viewertest::s_leaf;

/// A file that takes many portions comes into the tree and the scene.
class Filling : public viewertest::Stage {
protected:
  void SetUp() override
  {
    Stage::SetUp();
    QFile file(large);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(viewertest::MakeNestedFile(s_width, 3));
  }
  [[nodiscard]] viewer::Session& Session() { return window->GetSession(); }
  /// Once, when the first shapes are in the scene.
  void OnPlaced(const std::function<void()>& act)
  {
    m_connection = QObject::connect(&Session(), &viewer::Session::Placed, &Session(), [this, act] {
      QObject::disconnect(m_connection);
      act();
    });
  }
  void WaitForEnd()
  {
    WaitFor([this] { return !Session().IsReading(); }, "the end of the reading");
    WaitForShapes();
  }
  [[nodiscard]] unsigned int CountTree()
  {
    unsigned int count = 0;
    Session().GetWorld()->GetMemTree().GetNumInstances(count);
    return count;
  }
  [[nodiscard]] unsigned int CountVisible()
  {
    std::set<du::SmartPtr<zelk::Instance>> all;
    zelk::Instance::GetInstancesAndDescendents({Session().GetRoot()}, all);
    return static_cast<unsigned int>(std::count_if(all.begin(), all.end(), [this](const auto& instance) {
      const auto shape = Session().GetScene()->FindShapeInstance(instance.Get());
      return shape && shape->IsVisible();
    }));
  }
  /// What is there with the leaf alone.
  void ExpectNothingButTheLeaf()
  {
    EXPECT_EQ(Session().GetOpenFiles(), QStringList{s_leaf});
    EXPECT_EQ(CountTree(), 2U);
    EXPECT_EQ(Session().GetScene()->GetShapeInstanceCount(), 1U);
    EXPECT_EQ(window->GetModel().GetDrawnCount(), 1U);
    EXPECT_EQ(ReadRows(), "Files[leaf]");
    EXPECT_TRUE(window->GetMessages().isHidden());
  }

  static constexpr int s_width = 20;
  static constexpr unsigned int s_parts = s_width * s_width * s_width;
  static constexpr unsigned int s_instances = 1 + s_width + s_width * s_width + s_parts;

  QTemporaryDir folder;
  const QString large = folder.filePath("large.stp");

private:
  QMetaObject::Connection m_connection;
};

TEST_F(Filling, OfALargeFile_LeavesTurnsToTheWindow)
{
  int turns = 0;
  QTimer other;
  QObject::connect(&other, &QTimer::timeout, window.get(), [&] { ++turns; });
  QObject::connect(&Session(), &viewer::Session::Opened, &other, &QTimer::stop);
  OnPlaced([&] { other.start(); });
  const memkernel::ParallelTaskPause pause(Session().GetWorld()->GetMemTaskPool());

  window->Open({large});
  WaitFor([this] { return !Session().IsReading(); }, "the file");

  EXPECT_GT(turns, 0);
  EXPECT_EQ(CountTree(), 1 + s_instances);
  EXPECT_EQ(Session().GetScene()->GetShapeInstanceCount(), s_parts);
}

TEST_F(Filling, OfALargeFile_ShowsItsRowsAtOnceAndWhole)
{
  const qthost::GuiTreeItemModel& model = window->GetStructure().GetModel();
  std::set<std::size_t> seen;
  QTimer other;
  QObject::connect(&other, &QTimer::timeout, window.get(), [&] { seen.insert(model.GetRowCount()); });
  other.start();
  const memkernel::ParallelTaskPause pause(Session().GetWorld()->GetMemTaskPool());

  window->Open({large});
  WaitFor([this] { return !Session().IsReading(); }, "the file");

  EXPECT_THAT(seen, testing::ElementsAre(1, 1 + s_instances));
}

TEST_F(Filling, Progress_GoesOnAfterTheReading)
{
  std::vector<int> percents;
  QObject::connect(&Session(), &viewer::Session::ReadingProgressed, window.get(),
                   [&](int percent) { percents.push_back(percent); });
  const memkernel::ParallelTaskPause pause(Session().GetWorld()->GetMemTaskPool());

  window->Open({large});
  WaitFor([this] { return !Session().IsReading(); }, "the file");

  EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end()));
  EXPECT_THAT(percents, testing::Contains(testing::AllOf(testing::Gt(80), testing::Lt(100))));
}

TEST_F(Filling, Cancel_InTheMiddle_LeavesWhatWasOpen)
{
  Open({s_leaf});
  OnPlaced([this] { QTest::mouseClick(window->findChild<QToolButton*>("cancelReading"), Qt::LeftButton); });

  window->Open({large, s_hinge});
  WaitForEnd();

  ExpectNothingButTheLeaf();
  EXPECT_TRUE(window->findChild<QWidget*>("reading")->isHidden());
}

TEST_F(Filling, Cancel_BeforeTheScene_LeavesWhatWasOpen)
{
  Open({s_leaf});
  QObject::connect(&Session(), &viewer::Session::ReadingProgressed, window.get(), [this](int percent) {
    if (percent > 80) {
      Session().CancelReading();
    }
  });

  window->Open({large});
  WaitForEnd();

  ExpectNothingButTheLeaf();
}

TEST_F(Filling, Open_WhileACancelledFileGoes_ComesAfterIt)
{
  OnPlaced([this] {
    Session().CancelReading();
    window->Open({s_leaf, large});
  });
  window->Open({large});
  WaitFor([this] { return Session().GetOpenFiles().contains(s_leaf); }, "the small file");
  EXPECT_EQ(CountTree(), 2U);

  Session().CancelReading();
  WaitForEnd();

  ExpectNothingButTheLeaf();
}

TEST_F(Filling, CloseAll_InTheMiddle_LeavesNothing)
{
  Open({s_leaf});
  OnPlaced([this] { Session().CloseAll(); });

  window->Open({large});
  WaitForEnd();

  EXPECT_THAT(Session().GetOpenFiles(), IsEmpty());
  EXPECT_EQ(CountTree(), 1U);
  EXPECT_EQ(window->GetModel().GetDrawnCount(), 0U);
  EXPECT_EQ(ReadRows(), "Files");
}

TEST_F(Filling, Cancel_AfterSomethingWasAskedFor_LeavesNothingToLoad)
{
  const memkernel::ParallelTaskPause pause(Session().GetWorld()->GetMemTaskPool());
  std::size_t most = 0;
  OnPlaced([&] {
    most = window->GetBinding().GetLoadingCount();
    Session().CancelReading();
  });

  window->Open({large});
  WaitFor([this] { return !Session().IsReading(); }, "the end of the reading");

  EXPECT_EQ(most, 1U);
  EXPECT_EQ(window->GetBinding().GetLoadingCount(), 0U);
}

TEST_F(Filling, CloseOfTheWindow_InTheMiddle_Ends)
{
  bool isReached = false;
  OnPlaced([&] {
    isReached = true;
    window->close();
  });

  window->Open({large});
  WaitFor([&] { return isReached; }, "the middle");
  WaitFor([this] { return !Session().IsReading(); }, "the end of the reading");

  EXPECT_EQ(CountTree(), 1U);
}

TEST_F(Filling, EndOfTheWindow_InTheMiddle_EndsAll)
{
  bool isReached = false;
  OnPlaced([&] { isReached = true; });
  window->Open({large});
  while (!isReached) {
    QCoreApplication::processEvents();
  }
  ASSERT_TRUE(Session().IsReading());

  window.reset();

  EXPECT_EQ(window, nullptr);
}

TEST_F(Filling, Hide_InTheMiddle_TakesInWhatComesLater)
{
  OnPlaced([this] {
    window->GetBinding().SetVisible({Find("level 3")}, false);
    window->GetBinding().SetVisible({Find("level 2")}, true);
  });
  const memkernel::ParallelTaskPause pause(Session().GetWorld()->GetMemTaskPool());

  window->Open({large});
  WaitFor([this] { return !Session().IsReading() && window->GetBinding().IsUpToDate(); }, "the file");

  EXPECT_EQ(CountVisible(), static_cast<unsigned int>(s_width * s_width));
}

TEST_F(Filling, Selection_InTheMiddle_IsTakenByPanelAndScene)
{
  Open({s_leaf});
  const memkernel::ParallelTaskPause pause(Session().GetWorld()->GetMemTaskPool());
  bool isReached = false;
  OnPlaced([&] { isReached = true; });
  window->Open({large});
  while (!isReached) {
    QCoreApplication::processEvents();
  }

  QTest::mouseClick(Rows().viewport(), Qt::LeftButton, {}, Rows().visualRect(RowOf("leaf")).center());
  ASSERT_TRUE(Session().IsReading());

  EXPECT_THAT(GetSelected(), testing::ElementsAre("leaf"));
  EXPECT_TRUE(Rows().selectionModel()->isSelected(RowOf("leaf")));
}

}  // namespace
