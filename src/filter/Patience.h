#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <vector>

namespace guitree {

/// Asks now and then whether the work is still wanted.
class Patience {
public:
  /// `isWanted` may be empty, and must outlive the object.
  explicit Patience(const std::function<bool()>& isWanted) : m_isWanted(isWanted) {}

  /// For small steps.
  [[nodiscard]] bool HasEnded()
  {
    constexpr unsigned int s_steps = 1024;
    return ++m_count % s_steps == 0 ? HasEndedNow() : m_hasEnded;
  }
  [[nodiscard]] bool HasEndedNow()
  {
    m_hasEnded = m_hasEnded || (m_isWanted && !m_isWanted());
    return m_hasEnded;
  }

private:
  const std::function<bool()>& m_isWanted;
  unsigned int m_count = 0;
  bool m_hasEnded = false;
};

/// A stable sort that can be given up, which leaves the entries in any order.
template <typename Entry, typename Less>
void SortPatiently(std::vector<Entry>& entries, Less less, Patience& patience)
{
  constexpr std::size_t s_block = 4096;
  const std::size_t size = entries.size();
  const auto at = [&](std::size_t place) {
    return entries.begin() + static_cast<std::ptrdiff_t>(std::min(place, size));
  };
  for (std::size_t begin = 0; begin < size && !patience.HasEndedNow(); begin += s_block) {
    std::stable_sort(at(begin), at(begin + s_block), less);
  }
  for (std::size_t width = s_block; width < size; width *= 2) {
    for (std::size_t begin = 0; begin + width < size && !patience.HasEndedNow(); begin += 2 * width) {
      std::inplace_merge(at(begin), at(begin + width), at(begin + 2 * width), less);
    }
  }
}

}  // namespace guitree
