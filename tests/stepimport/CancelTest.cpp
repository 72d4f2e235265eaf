#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "stepimport/Progress.h"
#include "stepimport/ReadAssembly.h"

namespace {

using stepimport::ReadAssembly;
using stepimport::ReadResult;

const std::filesystem::path Samples = SAMPLES_DIR;

/// Asks to stop at the given call.
class StoppingProgress : public stepimport::Progress {
public:
  explicit StoppingProgress(int stopAt) : m_stopAt(stopAt) {}

  bool Report(int /*percent*/, std::string_view /*stage*/) override { return ++m_calls < m_stopAt; }
  [[nodiscard]] int GetCalls() const { return m_calls; }

private:
  int m_stopAt;
  int m_calls = 0;
};

int CountReports(const std::filesystem::path& file)
{
  StoppingProgress progress(1 << 30);
  EXPECT_TRUE(ReadAssembly(file, &progress).ok);
  return progress.GetCalls();
}

void ExpectCancelled(const ReadResult& result, const std::filesystem::path& file)
{
  EXPECT_FALSE(result.ok);
  EXPECT_TRUE(result.cancelled);
  EXPECT_EQ(result.error, file.string() + ": cancelled");
  EXPECT_TRUE(result.assembly.products.empty());
  EXPECT_EQ(result.shapes, nullptr);
  EXPECT_TRUE(result.warnings.empty());
}

TEST(Cancel, ReadAssembly_StoppedAtAnyReport_GivesNothingAndAsksNoMore)
{
  const std::filesystem::path file = Samples / "nested-assembly.stp";
  const int reports = CountReports(file);
  ASSERT_GT(reports, 20);

  for (int stopAt = 1; stopAt <= reports; stopAt += stopAt < 10 ? 1 : reports / 10) {
    StoppingProgress progress(stopAt);
    const ReadResult result = ReadAssembly(file, &progress);

    ExpectCancelled(result, file);
    EXPECT_EQ(progress.GetCalls(), stopAt);
  }
}

TEST(Cancel, ReadAssembly_StoppedInAFileThatIsReferredTo_GivesNothing)
{
  const std::filesystem::path file = Samples / "external-references" / "hinge.stp";
  const int reports = CountReports(file);
  const int inSecondFile = reports * 3 / 4;
  StoppingProgress progress(inSecondFile);

  const ReadResult result = ReadAssembly(file, &progress);

  ExpectCancelled(result, file);
  EXPECT_EQ(progress.GetCalls(), inSecondFile);
}

TEST(Cancel, ReadAssembly_AfterACancelledOne_ReadsEverything)
{
  const std::filesystem::path file = Samples / "nested-assembly.stp";
  StoppingProgress progress(30);
  const ReadResult stopped = ReadAssembly(file, &progress);
  ASSERT_TRUE(stopped.cancelled);

  const ReadResult result = ReadAssembly(file, nullptr);

  EXPECT_TRUE(result.ok) << result.error;
  EXPECT_FALSE(result.cancelled);
  EXPECT_FALSE(result.assembly.products.empty());
}

}  // namespace
