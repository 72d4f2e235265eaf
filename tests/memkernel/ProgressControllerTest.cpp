#include "memkernel/ProgressController.h"

#include <gmock/gmock.h>

#include "Recorders.h"
#include "memkernel/OwnerLoop.h"

namespace memkerneltest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RecordingCtrl : public zelk::ProgressCtrl {
public:
  RecordingCtrl(const du::SmartPtr<zelk::AsyncEvent>& event, Lines& lines) : ProgressCtrl(event), m_lines(lines) {}
  ~RecordingCtrl() override { m_lines.emplace_back("released"); }

  void OnProgress(unsigned char percent) override { m_lines.push_back(std::to_string(percent)); }
  void OnFinished() override { m_lines.emplace_back("finished"); }

private:
  Lines& m_lines;
};

class ProgressControllerTest : public testing::Test {
protected:
  ProgressControllerTest() { host->ManageObject(event); }
  ~ProgressControllerTest() override { loop->Close(); }

  Lines lines;
  const du::SmartPtr<memkernel::OwnerLoop> loop = du::MakeSmart<memkernel::OwnerLoop>();
  const du::SmartPtr<dom::ManagedObject> host = du::MakeSmart<dom::ManagedObject>(loop);
  const du::SmartPtr<zelk::AsyncEvent> event = du::MakeSmart<zelk::AsyncEvent>(true);
  const du::SmartPtr<memkernel::ProgressController> controller = du::MakeSmart<memkernel::ProgressController>();
};

TEST_F(ProgressControllerTest, AddCtrl_FeedsItUntilItsEventCompletesAndLetsItGo)
{
  controller->AddCtrl(du::MakeSmart<RecordingCtrl>(event, lines));

  event->Progress(30);
  loop->RunDue();
  event->Progress(60);
  event->Complete();
  loop->RunDue();

  EXPECT_THAT(lines, ElementsAre("30", "60", "finished", "released"));
  EXPECT_THAT(controller->GetCtrls(), IsEmpty());
}

TEST_F(ProgressControllerTest, AddCtrl_OfNothing_IsIgnored)
{
  controller->AddCtrl(nullptr);
  controller->AddCtrl(du::MakeSmart<RecordingCtrl>(nullptr, lines));

  EXPECT_THAT(lines, ElementsAre("released"));
  EXPECT_THAT(controller->GetCtrls(), IsEmpty());
}

TEST_F(ProgressControllerTest, AddCtrl_ForACompletedEvent_TellsTheEndInALaterTurn)
{
  event->Complete();
  loop->RunDue();

  controller->AddCtrl(du::MakeSmart<RecordingCtrl>(event, lines));
  EXPECT_THAT(lines, IsEmpty());
  loop->RunDue();

  EXPECT_THAT(lines, ElementsAre("finished", "released"));
}

TEST_F(ProgressControllerTest, Clear_LetsGoOfAllWithoutAWord)
{
  controller->AddCtrl(du::MakeSmart<RecordingCtrl>(event, lines));

  controller->Clear();
  event->Complete();
  loop->RunDue();

  EXPECT_THAT(lines, ElementsAre("released"));
}

}  // namespace
}  // namespace memkerneltest
