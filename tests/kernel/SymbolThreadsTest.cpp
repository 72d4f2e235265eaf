#include <gtest/gtest.h>

#include <barrier>
#include <string>
#include <thread>
#include <vector>

#include "du/Symbol.h"

namespace {

constexpr std::size_t s_threads = 4;
constexpr std::size_t s_texts = 5000;

TEST(SymbolThreads, ThreadsThatInternTheSameTexts_GetTheSameSymbols)
{
  std::vector<std::vector<du::Symbol>> symbols(s_threads);
  std::barrier start(s_threads);

  std::vector<std::thread> threads;
  for (auto& own : symbols) {
    threads.emplace_back([&] {
      start.arrive_and_wait();
      for (std::size_t i = 0; i < s_texts; ++i) {
        own.emplace_back(std::string_view("a text of several threads, number " + std::to_string(i)));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }

  for (const auto& own : symbols) {
    EXPECT_TRUE(own == symbols.front());
  }
  EXPECT_TRUE(symbols.front().back() == "a text of several threads, number 4999");
}

TEST(SymbolThreads, ReadingWhileOthersIntern_SeesWholeTexts)
{
  const du::Symbol symbol("read all the time");
  std::thread writer([] {
    for (std::size_t i = 0; i < s_texts; ++i) {
      const du::Symbol made(std::string_view("another text, number " + std::to_string(i)));
      EXPECT_FALSE(made.IsEmpty());
    }
  });

  bool isWhole = true;
  for (std::size_t i = 0; i < s_texts; ++i) {
    isWhole = isWhole && symbol == "read all the time" && symbol == du::Symbol("read all the time");
  }
  writer.join();

  EXPECT_TRUE(isWhole);
}

}  // namespace
