#include "du/HashNextPrime.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

namespace {

// __extension__ because the standard has no integer that holds a product of two words.
__extension__ using Wide = unsigned __int128;

std::uint64_t Power(std::uint64_t base, std::uint64_t exponent, std::uint64_t modulus)
{
  std::uint64_t result = 1;
  for (; exponent != 0; exponent >>= 1) {
    if ((exponent & 1) != 0) {
      result = static_cast<std::uint64_t>(Wide{result} * base % modulus);
    }
    base = static_cast<std::uint64_t>(Wide{base} * base % modulus);
  }
  return result;
}

/// Miller and Rabin's test with the witnesses that decide every 64 bit number.
bool IsPrime(std::uint64_t number)
{
  constexpr std::array<std::uint64_t, 12> witnesses{2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37};
  for (const std::uint64_t witness : witnesses) {
    if (number % witness == 0) {
      return number == witness;
    }
  }
  std::uint64_t odd = number - 1;
  int twos = 0;
  while (odd % 2 == 0) {
    odd /= 2;
    ++twos;
  }
  for (const std::uint64_t witness : witnesses) {
    std::uint64_t power = Power(witness, odd, number);
    bool passes = power == 1 || power == number - 1;
    for (int i = 1; i < twos && !passes; ++i) {
      power = static_cast<std::uint64_t>(Wide{power} * power % number);
      passes = power == number - 1;
    }
    if (!passes) {
      return false;
    }
  }
  return number > 1;
}

/// The whole table, found by asking for the number after each answer.
std::vector<std::uint64_t> GetTable()
{
  std::vector<std::uint64_t> table{du::HashNextPrime(0)};
  for (std::size_t next = du::HashNextPrime(table.back() + 1); next > table.back();
       next = du::HashNextPrime(table.back() + 1)) {
    table.push_back(next);
  }
  return table;
}

TEST(HashNextPrime, EveryEntryOfTheTable_IsPrime)
{
  for (const std::uint64_t prime : GetTable()) {
    EXPECT_TRUE(IsPrime(prime)) << prime;
  }
}

TEST(HashNextPrime, EveryEntry_IsAtLeastTwiceTheOneBeforeAndNotMuchMore)
{
  const auto table = GetTable();

  for (std::size_t i = 1; i < table.size(); ++i) {
    EXPECT_GE(table[i], 2 * table[i - 1]);
    EXPECT_LE(table[i] / 3, table[i - 1]);
  }
}

TEST(HashNextPrime, TheTable_ReachesSizesThatNoMapHas)
{
  EXPECT_GT(GetTable().back(), std::uint64_t{1} << 62);
}

TEST(HashNextPrime, AnswersTheSmallestEntryNotBelowTheSize)
{
  const auto table = GetTable();

  for (std::size_t i = 1; i < table.size(); ++i) {
    EXPECT_EQ(du::HashNextPrime(table[i - 1] + 1), table[i]);
    EXPECT_EQ(du::HashNextPrime(table[i] - 1), table[i]);
    EXPECT_EQ(du::HashNextPrime(table[i]), table[i]);
  }
}

TEST(HashNextPrime, BeyondTheTable_AnswersItsLastEntry)
{
  EXPECT_EQ(du::HashNextPrime(std::numeric_limits<std::size_t>::max()), GetTable().back());
}

}  // namespace
