#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "stepimport/Progress.h"
#include "stepimport/ReadAssembly.h"

namespace {

const std::filesystem::path Samples = SAMPLES_DIR;

class RecordingProgress : public stepimport::Progress {
public:
  bool Report(int percent, std::string_view stage) override
  {
    percents.push_back(percent);
    if (stages.empty() || stages.back() != stage) {
      stages.emplace_back(stage);
    }
    return true;
  }

  std::vector<int> percents;
  std::vector<std::string> stages;
};

TEST(Progress, ReadAssembly_TellsEachStageOnceAndInOrder)
{
  RecordingProgress progress;

  const stepimport::ReadResult result =
      stepimport::ReadAssembly(Samples / "external-references" / "hinge.stp", &progress);

  ASSERT_TRUE(result.ok) << result.error;
  const std::vector<std::string> expected = {
      "Loading hinge.stp", "Reading hinge.stp", "Building the shapes of hinge.stp",
      "Loading leaf.stp",  "Reading leaf.stp",  "Building the shapes of leaf.stp"};
  EXPECT_EQ(progress.stages, expected);
}

TEST(Progress, ReadAssembly_ReportsPercentsThatNeverGoBack)
{
  RecordingProgress progress;

  const stepimport::ReadResult result =
      stepimport::ReadAssembly(Samples / "external-references" / "hinge.stp", &progress);

  ASSERT_TRUE(result.ok) << result.error;
  ASSERT_FALSE(progress.percents.empty());
  EXPECT_TRUE(std::is_sorted(progress.percents.begin(), progress.percents.end()));
  EXPECT_GE(progress.percents.front(), 0);
  EXPECT_LE(progress.percents.back(), 100);
  EXPECT_GE(progress.percents.back(), 90);
}

TEST(Progress, ReadAssembly_OfOneFile_PassesThroughManyPercents)
{
  RecordingProgress progress;

  const stepimport::ReadResult result = stepimport::ReadAssembly(Samples / "nested-assembly.stp", &progress);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_GE(std::set<int>(progress.percents.begin(), progress.percents.end()).size(), 10U);
}

}  // namespace
