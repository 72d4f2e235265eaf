// What a failure prints for guitree-show is something that guitree-show plays.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "Report.h"
#include "Show.h"

// Open CASCADE has no frame pointers: only with full unwinding does the list of known leaks find its functions.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the name that AddressSanitizer looks for
extern "C" const char* __asan_default_options()
{
  return "fast_unwind_on_malloc=0";
}

namespace systemtest {
namespace {

class SystemScript : public testing::TestWithParam<std::uint64_t> {};

TEST_P(SystemScript, OfAnyEventsIsPlayedToItsEnd)
{
  const Outcome outcome = Play(MakeEvents(GetParam(), 250), {});
  ASSERT_EQ(outcome.fault, "");
  const std::string path = testing::TempDir() + "system-" + std::to_string(GetParam()) + ".script";
  {
    std::ofstream file(path);
    for (const std::string& line : outcome.script) {
      file << line << '\n';
    }
  }
  Options options;
  options.files = {SAMPLE};
  options.script = path;
  options.check = true;

  testing::internal::CaptureStdout();
  const ExitCode code = Show(options);
  const std::string shown = testing::internal::GetCapturedStdout();

  EXPECT_EQ(code, ExitOk) << path;
  EXPECT_GT(std::count(shown.begin(), shown.end(), '>'), 50) << path;
}

INSTANTIATE_TEST_SUITE_P(OfSeeds, SystemScript, testing::Range<std::uint64_t>(1, 11));

}  // namespace
}  // namespace systemtest
