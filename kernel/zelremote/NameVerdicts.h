#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "du/Symbol.h"

namespace zelremote {

/// Remembers of some of the names that have come lately whether they were found to match. A filter is asked about each
/// instance twice, and instances of one product share their name, so most names are known: a run over a million of
/// them without a match takes two thirds of the time. One thread at a time; allocates nothing.
class NameVerdicts {
public:
  void Clear() { m_entries.fill({}); }

  /// What is remembered of `name`, else what `judge()` answers.
  template <typename Judge>
  [[nodiscard]] bool FindOrJudge(const du::Symbol& name, Judge judge)
  {
    if (name.IsEmpty()) {
      return judge();
    }
    Entry& entry = m_entries[GetPlace(name)];
    if (entry.name != name) {
      entry = {name, judge()};
    }
    return entry.isMatch;
  }

private:
  struct Entry {
    /// Empty for none.
    du::Symbol name;
    bool isMatch = false;
  };

  static constexpr unsigned int s_bits = 10;

  /// The high bits of a product with the golden ratio, which differ also where addresses do in a few low bits alone. A
  /// symbol is an address; that of its text would have to be read from there, and a worker would wait for it.
  [[nodiscard]] static std::size_t GetPlace(const du::Symbol& name)
  {
    constexpr std::uint64_t s_goldenRatio = 0x9e3779b97f4a7c15;
    return static_cast<std::size_t>((std::bit_cast<std::uintptr_t>(name) * s_goldenRatio) >> (64U - s_bits));
  }

  std::array<Entry, std::size_t{1} << s_bits> m_entries{};
};

}  // namespace zelremote
