#pragma once

namespace du {

/// A plain set of bits, passed by value. What a bit means is for the operation that takes the flags.
class Flags {
public:
  constexpr Flags() noexcept = default;
  explicit constexpr Flags(unsigned int bits) noexcept : m_bits(bits) {}

  [[nodiscard]] constexpr unsigned int GetBits() const noexcept { return m_bits; }
  /// Whether all of `bits` are set; true for no bits.
  [[nodiscard]] constexpr bool Has(unsigned int bits) const noexcept { return (m_bits & bits) == bits; }

  friend constexpr bool operator==(const Flags&, const Flags&) noexcept = default;

private:
  unsigned int m_bits = 0;
};

}  // namespace du
