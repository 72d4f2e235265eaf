#include "dp/ZelTracer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr dp::ZelTracer s_tracer("guitree", "TreeStateBase");

struct Line {
  dp::TraceType type;
  std::string component;
  std::string className;
  std::string text;

  friend bool operator==(const Line&, const Line&) = default;
};

class ZelTracer : public testing::Test {
protected:
  ~ZelTracer() override { dp::ZelTracer::SetSink({}); }

  void Collect()
  {
    dp::ZelTracer::SetSink([this](const dp::TraceLine& line) {
      lines.push_back({line.type, std::string(line.component), std::string(line.className), std::string(line.text)});
    });
  }

  std::vector<Line> lines;
};

/// Counts how often it is written out.
struct Printed {
  int* prints;
  friend std::ostream& operator<<(std::ostream& out, const Printed& printed)
  {
    ++*printed.prints;
    return out << "printed";
  }
};

TEST_F(ZelTracer, WithoutASink_FormatsNothing)
{
  int prints = 0;

  s_tracer(dp::TraceType::Info) << Printed{&prints};

  EXPECT_FALSE(dp::ZelTracer::HasSink());
  EXPECT_EQ(prints, 0);
}

TEST_F(ZelTracer, ALine_ReachesTheSinkAsOneWithItsSource)
{
  Collect();

  s_tracer(dp::TraceType::Info) << "Populating tree... " << 12 << ' ' << std::string("rows");
  s_tracer(dp::TraceType::Error) << "second";

  EXPECT_EQ(lines, (std::vector<Line>{{dp::TraceType::Info, "guitree", "TreeStateBase", "Populating tree... 12 rows"},
                                      {dp::TraceType::Error, "guitree", "TreeStateBase", "second"}}));
}

TEST_F(ZelTracer, ALineWithoutText_IsALineAllTheSame)
{
  Collect();

  (void)s_tracer(dp::TraceType::Warning);

  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].text, "");
}

TEST_F(ZelTracer, TakingTheSinkAway_DropsLinesAgainAndAlsoThoseThatHadBegun)
{
  Collect();
  EXPECT_TRUE(dp::ZelTracer::HasSink());

  {
    auto begun = s_tracer(dp::TraceType::Info);
    begun << "begun";
    dp::ZelTracer::SetSink({});
  }
  s_tracer(dp::TraceType::Info) << "later";

  EXPECT_FALSE(dp::ZelTracer::HasSink());
  EXPECT_TRUE(lines.empty());
}

TEST_F(ZelTracer, ANewSink_ReplacesTheFormerOne)
{
  Collect();
  int others = 0;

  dp::ZelTracer::SetSink([&](const dp::TraceLine&) { ++others; });
  s_tracer(dp::TraceType::Info) << "text";

  EXPECT_TRUE(lines.empty());
  EXPECT_EQ(others, 1);
}

}  // namespace
