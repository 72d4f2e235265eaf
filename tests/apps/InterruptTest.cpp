#include "Interrupt.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <sstream>

#include "ReadingLine.h"
#include "Show.h"

namespace {

TEST(Interrupt, WithoutASignal_NothingWasInterrupted)
{
  const InterruptScope scope;

  EXPECT_FALSE(InterruptScope::WasInterrupted());
}

TEST(Interrupt, AfterTheScope_TheFormerHandlerIsBack)
{
  const auto former = std::signal(SIGINT, SIG_IGN);
  {
    const InterruptScope scope;
  }

  EXPECT_EQ(std::signal(SIGINT, former), SIG_IGN);
}

TEST(Interrupt, WhereTheSignalIsIgnored_ItStaysIgnored)
{
  const auto former = std::signal(SIGINT, SIG_IGN);
  {
    const InterruptScope scope;
    std::raise(SIGINT);

    EXPECT_FALSE(InterruptScope::WasInterrupted());
  }
  std::signal(SIGINT, former);
}

TEST(InterruptDeathTest, FirstSignal_IsRememberedAndStopsReading)
{
  EXPECT_EXIT(
      {
        const InterruptScope scope;
        ReadingLine line(false);
        const bool before = line.Report(1, "Reading");
        std::raise(SIGINT);
        const bool after = line.Report(2, "Reading");
        std::_Exit(before && !after && InterruptScope::WasInterrupted() ? 0 : 1);
      },
      testing::ExitedWithCode(0), "^$");
}

TEST(InterruptDeathTest, SecondSignal_EndsTheProcess)
{
  EXPECT_EXIT(
      {
        const InterruptScope scope;
        std::raise(SIGINT);
        std::raise(SIGINT);
      },
      testing::KilledBySignal(SIGINT), "");
}

TEST(InterruptDeathTest, Show_ThatIsInterruptedWhileReading_PrintsNothing)
{
  EXPECT_EXIT(
      {
        const InterruptScope scope;
        std::raise(SIGINT);
        std::ostringstream printed;
        std::cout.rdbuf(printed.rdbuf());
        Options options;
        options.files = {SAMPLE};
        const ExitCode code = Show(options);
        std::cout.rdbuf(nullptr);
        std::_Exit(printed.str().empty() ? code : ExitFailure);
      },
      testing::ExitedWithCode(ExitInterrupted), "^$");
}

}  // namespace
