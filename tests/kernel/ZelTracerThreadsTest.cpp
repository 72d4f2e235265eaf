#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

#include "dp/ZelTracer.h"

namespace {

constexpr dp::ZelTracer s_tracer("kernel", "Threads");

TEST(ZelTracerThreads, LinesOfSeveralThreads_ComeWholeAndOneAtATime)
{
  constexpr int threadCount = 4;
  constexpr int lineCount = 500;
  std::multiset<std::string> lines;
  dp::ZelTracer::SetSink([&](const dp::TraceLine& line) { lines.emplace(line.text); });

  std::vector<std::thread> threads;
  for (int i = 0; i < threadCount; ++i) {
    threads.emplace_back([i] {
      for (int line = 0; line < lineCount; ++line) {
        s_tracer(dp::TraceType::Info) << "thread " << i << " line " << line;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  dp::ZelTracer::SetSink({});

  EXPECT_EQ(lines.size(), static_cast<std::size_t>(threadCount * lineCount));
  EXPECT_EQ(lines.count("thread 3 line 499"), 1U);
}

TEST(ZelTracerThreads, TheSink_MayBeTakenAwayWhileThreadsTrace)
{
  int lines = 0;
  std::thread tracing([] {
    for (int line = 0; line < 2000; ++line) {
      s_tracer(dp::TraceType::Info) << line;
    }
  });

  for (int i = 0; i < 200; ++i) {
    dp::ZelTracer::SetSink([&](const dp::TraceLine&) { ++lines; });
    dp::ZelTracer::SetSink({});
  }
  const int atTheEnd = lines;
  tracing.join();

  EXPECT_EQ(lines, atTheEnd);
}

}  // namespace
