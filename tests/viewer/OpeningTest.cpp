#include <gmock/gmock.h>

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QUrl>
#include <chrono>
#include <thread>

#include "support/Stage.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using viewertest::s_hinge;
using viewertest::s_leaf;
using viewertest::s_pump;
using viewertest::s_pumpParts;

class Opening : public viewertest::Stage {
protected:
  /// A file in a folder that lives as long as the test.
  QString Write(const QString& name, const QByteArray& bytes)
  {
    QFile file(m_folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
  }
  /// Until the worker is done, of which nobody has been told then: no event is handled meanwhile.
  void WaitForReader()
  {
    ASSERT_TRUE(window->GetSession().IsReading());
    while (window->GetSession().GetWorld()->GetMemTaskPool().GetUnfinishedCount() > 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
  /// Until nothing is read any more, and what was opened is drawn.
  void WaitForEnd()
  {
    WaitFor([this] { return !window->GetSession().IsReading(); }, "the end of the reading");
    WaitForShapes();
  }
  [[nodiscard]] std::string GetMessages() const { return window->GetMessages().GetMessages().join('\n').toStdString(); }
  [[nodiscard]] std::size_t GetDrawnCount() { return window->GetModel().GetDrawnCount(); }

private:
  QTemporaryDir m_folder;
};

TEST_F(Opening, Open_OfAFile_DrawsAllItsParts)
{
  Open({s_pump});

  EXPECT_EQ(GetDrawnCount(), s_pumpParts);
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts);
  EXPECT_TRUE(window->GetMessages().isHidden());
  EXPECT_EQ(window->windowTitle(), "nested-assembly.stp - guitree-viewer");
}

TEST_F(Opening, Open_OfSeveralFiles_DrawsThemTogether)
{
  Open({s_leaf, s_pump});

  EXPECT_EQ(GetDrawnCount(), s_pumpParts + 1);
  EXPECT_EQ(window->GetSession().GetOpenFiles().size(), 2);
}

TEST_F(Opening, Open_OfAnotherFile_AddsIt)
{
  Open({s_leaf});
  Open({s_pump});

  EXPECT_EQ(GetDrawnCount(), s_pumpParts + 1);
}

TEST_F(Opening, Open_OfAFileThatMakesNoSense_SaysWhyAndLeavesTheRest)
{
  Open({s_leaf});
  const QString bad = Write("bad.stp", "This is no STEP file.\n");

  Open({bad});

  EXPECT_EQ(GetMessages().rfind(bad.toStdString() + ": ", 0), 0U) << GetMessages();
  EXPECT_TRUE(window->GetMessages().isVisible());
  EXPECT_EQ(GetDrawnCount(), 1U);
  EXPECT_EQ(window->GetSession().GetOpenFiles(), QStringList{s_leaf});
}

TEST_F(Opening, Open_OfABadFileBetweenGoodOnes_OpensTheGoodOnes)
{
  Open({s_leaf, Write("empty.stp", ""), s_pump});

  EXPECT_NE(GetMessages().find("empty.stp: is empty"), std::string::npos) << GetMessages();
  EXPECT_EQ(GetDrawnCount(), s_pumpParts + 1);
}

TEST_F(Opening, Open_OfAMissingFile_SaysSo)
{
  Open({"/no/such.stp"});

  EXPECT_EQ(GetMessages(), "/no/such.stp: does not exist");
  EXPECT_EQ(GetDrawnCount(), 0U);
}

TEST_F(Opening, Open_OfAFileThatIsOpen_SaysSoAndOpensItOnce)
{
  Open({s_leaf});

  Open({s_leaf});

  EXPECT_EQ(GetMessages(), s_leaf.toStdString() + ": is open already");
  EXPECT_EQ(GetDrawnCount(), 1U);
}

TEST_F(Opening, Open_OfAFileWithAMissingReference_ShowsItAndWarns)
{
  Open({s_hinge});

  EXPECT_NE(GetMessages().find("'pin.stp'"), std::string::npos) << GetMessages();
  EXPECT_EQ(GetDrawnCount(), 2U);
}

TEST_F(Opening, CloseOfTheMessages_HidesThem)
{
  Open({"/no/such.stp"});

  QTest::mouseClick(window->findChild<QToolButton*>("closeMessages"), Qt::LeftButton);

  EXPECT_TRUE(window->GetMessages().isHidden());
  EXPECT_EQ(GetMessages(), "");
}

TEST_F(Opening, CancelWhileReading_LeavesWhatWasOpen)
{
  Open({s_leaf});
  QObject::connect(&window->GetSession(), &viewer::Session::ReadingBegan, window.get(),
                   [this] { QTest::mouseClick(window->findChild<QToolButton*>("cancelReading"), Qt::LeftButton); });

  Open({s_pump, s_hinge});

  EXPECT_EQ(window->GetSession().GetOpenFiles(), QStringList{s_leaf});
  EXPECT_EQ(GetDrawnCount(), 1U);
  EXPECT_EQ(GetMessages(), "");
  EXPECT_TRUE(window->findChild<QWidget*>("reading")->isHidden());
}

TEST_F(Opening, CancelWhenTheReaderIsDone_OpensNothing)
{
  window->Open({s_pump, s_hinge});
  WaitForReader();

  window->GetSession().CancelReading();
  WaitForEnd();

  EXPECT_THAT(window->GetSession().GetOpenFiles(), IsEmpty());
  EXPECT_EQ(GetDrawnCount(), 0U);
  EXPECT_EQ(GetMessages(), "");
}

TEST_F(Opening, CloseAllWhenTheReaderIsDone_OpensNothing)
{
  Open({s_leaf});
  window->Open({s_pump});
  WaitForReader();

  window->GetSession().CloseAll();
  WaitForEnd();

  EXPECT_THAT(window->GetSession().GetOpenFiles(), IsEmpty());
  EXPECT_EQ(GetDrawnCount(), 0U);
}

TEST_F(Opening, CancelOfAFileThatFails_SaysNothing)
{
  window->Open({Write("bad.stp", "This is no STEP file.\n")});
  WaitForReader();

  window->GetSession().CancelReading();
  WaitFor([this] { return !window->GetSession().IsReading(); }, "the end of the reading");

  EXPECT_EQ(GetMessages(), "");
}

TEST_F(Opening, Open_AfterACancel_Reads)
{
  const auto cancel = QObject::connect(&window->GetSession(), &viewer::Session::ReadingBegan, window.get(),
                                       [this] { window->GetSession().CancelReading(); });
  Open({s_pump});
  ASSERT_EQ(GetDrawnCount(), 0U);
  QObject::disconnect(cancel);

  Open({s_pump});

  EXPECT_EQ(GetDrawnCount(), s_pumpParts);
}

TEST_F(Opening, Open_FromASlotOfOpened_ReadsOneFileAfterTheOther)
{
  QStringList begun;
  QStringList opened;
  viewer::Session& session = window->GetSession();
  QObject::connect(&session, &viewer::Session::ReadingBegan, window.get(), [&](const QString& file) { begun += file; });
  QObject::connect(&session, &viewer::Session::Opened, window.get(), [&](const QString& file) {
    opened += file;
    if (file == s_leaf) {
      session.Open({s_hinge});
    }
  });

  Open({s_leaf, s_pump});

  EXPECT_EQ(begun, QStringList({s_leaf, s_pump, s_hinge}));
  EXPECT_EQ(opened, begun);
  EXPECT_EQ(GetDrawnCount(), s_pumpParts + 3);
}

TEST_F(Opening, Reading_ShowsHowFarItIs)
{
  int most = 0;
  bool wasSeen = false;
  QObject::connect(&window->GetSession(), &viewer::Session::ReadingProgressed, window.get(), [&](int percent) {
    most = std::max(most, percent);
    wasSeen = wasSeen || window->findChild<QProgressBar*>()->isVisible();
  });

  Open({s_pump});

  EXPECT_TRUE(wasSeen);
  EXPECT_GT(most, 50);
}

TEST_F(Opening, CloseAll_LeavesNothing)
{
  Open({s_leaf, s_pump});

  Press(Qt::CTRL | Qt::Key_W);

  EXPECT_EQ(GetDrawnCount(), 0U);
  EXPECT_THAT(window->GetSession().GetOpenFiles(), IsEmpty());
  EXPECT_EQ(window->windowTitle(), "guitree-viewer");
}

TEST_F(Opening, Close_WhileShapesAreLoading_LeavesNothing)
{
  window->Open({s_pump});
  WaitFor([this] { return !window->GetSession().IsReading(); }, "the file");

  window->GetSession().CloseAll();
  WaitForShapes();

  EXPECT_EQ(GetDrawnCount(), 0U);
}

TEST_F(Opening, Close_BeforeTheShapesAreLoaded_LeavesThemUnloaded)
{
  memkernel::World& world = *window->GetSession().GetWorld();
  auto pause = std::make_unique<memkernel::ParallelTaskPause>(world.GetMemTaskPool());
  window->Open({s_pump});
  WaitFor([this] { return !window->GetSession().IsReading(); }, "the file");
  const auto shape = du::DynamicCast<memkernel::Instance>(Find("bolt:1"))->GetProduct()->GetShape();
  ASSERT_GT(window->GetBinding().GetLoadingCount(), 0U);

  window->GetSession().CloseAll();
  EXPECT_EQ(window->GetBinding().GetLoadingCount(), 0U);
  pause.reset();
  WaitFor([&world] { return world.GetMemLoader().GetLoadCount() == 0; }, "the loads");

  EXPECT_EQ(shape->GetDataStatus(), zelk::ShapeDataNone);
}

TEST_F(Opening, Open_OfWhatWasClosed_DrawsItAgain)
{
  Open({s_pump});
  window->GetSession().CloseAll();

  Open({s_pump});

  EXPECT_EQ(GetDrawnCount(), s_pumpParts);
}

TEST_F(Opening, Drop_OfFiles_OpensThem)
{
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(s_leaf), QUrl("https://example.org/no.stp")});
  QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window.get(), &enter);
  QDropEvent drop({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window.get(), &drop);

  WaitFor([this] { return !window->GetSession().IsReading(); }, "the file");
  WaitForShapes();

  EXPECT_TRUE(enter.isAccepted());
  EXPECT_EQ(window->GetSession().GetOpenFiles(), QStringList{s_leaf});
}

TEST_F(Opening, End_OfTheWindowWhileReading_WaitsForTheReader)
{
  window->Open({s_pump, s_hinge});
  ASSERT_TRUE(window->GetSession().IsReading());

  window.reset();

  EXPECT_EQ(window, nullptr);
}

}  // namespace
