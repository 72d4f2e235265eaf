// What names cost: to intern, to intern once more, and to copy; beside a plain set of strings and plain strings.

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <benchmark/benchmark.h>

#include "du/Symbol.h"
#include "support/Measure.h"

namespace bench {
namespace {

/// As long as the names of parts are, too long for the small buffer of a string. No two calls have a text in common:
/// what is interned once stays for the life of the process.
std::vector<std::string> MakeNewTexts(std::size_t count)
{
  static std::size_t s_last = 0;
  std::vector<std::string> texts;
  texts.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    texts.push_back("Hexagon socket screw " + std::to_string(++s_last));
  }
  return texts;
}

std::vector<du::Symbol> MakeSymbols(const std::vector<std::string>& texts)
{
  std::vector<du::Symbol> symbols;
  symbols.reserve(texts.size());
  for (const std::string& text : texts) {
    symbols.emplace_back(std::string_view(text));
  }
  return symbols;
}

double TimeIntern(const std::vector<std::string>& texts)
{
  std::vector<du::Symbol> symbols;
  const double seconds = Time([&] { symbols = MakeSymbols(texts); });
  Require(symbols.size() == texts.size() && symbols.back() == texts.back(), "each symbol has its text");
  return seconds;
}

double TimeEmplace(std::unordered_set<std::string>& set, const std::vector<std::string>& texts)
{
  const double seconds = Time([&] {
    for (const std::string& text : texts) {
      benchmark::DoNotOptimize(&*set.emplace(text).first);
    }
  });
  Require(set.size() == texts.size(), "each text is in the set");
  return seconds;
}

Figures InternNew(std::size_t count)
{
  return RunRounds(count, [&](Figures& figures) {
    const std::vector<std::string> texts = MakeNewTexts(count);
    std::unordered_set<std::string> set;
    const double seconds = TimeIntern(texts);
    figures["x_unordered_set"] = seconds / TimeEmplace(set, texts);
    return seconds;
  });
}

Figures InternKnown(std::size_t count)
{
  const std::vector<std::string> texts = MakeNewTexts(count);
  const std::vector<du::Symbol> symbols = MakeSymbols(texts);
  Require(MakeSymbols(texts) == symbols, "a known text gives the known symbol");
  std::unordered_set<std::string> set(texts.begin(), texts.end());
  return RunRounds(count, [&](Figures& figures) {
    const double seconds = TimeIntern(texts);
    figures["x_unordered_set"] = seconds / TimeEmplace(set, texts);
    return seconds;
  });
}

template <typename Value>
double TimeCopy(const std::vector<Value>& values)
{
  std::vector<Value> copies;
  copies.reserve(values.size());
  const double seconds = Time([&] {
    for (const Value& value : values) {
      copies.push_back(value);
    }
    benchmark::ClobberMemory();
  });
  Require(copies == values, "a copy equals its source");
  return seconds;
}

Figures Copy(std::size_t count)
{
  const std::vector<std::string> texts = MakeNewTexts(count);
  const std::vector<du::Symbol> symbols = MakeSymbols(texts);
  return RunRounds(count, [&](Figures& figures) {
    const double seconds = TimeCopy(symbols);
    figures["x_string"] = seconds / TimeCopy(texts);
    return seconds;
  });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  bench::Register("Symbol/intern_new", {10'000, 100'000, 1'000'000}, bench::InternNew);
  bench::Register("Symbol/intern_known", {10'000, 100'000, 1'000'000}, bench::InternKnown);
  bench::Register("Symbol/copy", {10'000, 100'000, 1'000'000}, bench::Copy);
  return bench::RunAll(argc, argv);
}
