#pragma once

#include <cstddef>

namespace du {

/// The smallest prime of the table that is not below `size`; the largest of the table for a size beyond it. Each prime
/// of the table is more than twice the one before, so a map that grows by this function moves each node a constant
/// number of times on average. With a table of all primes a million keys would cost 10^10 moves.
[[nodiscard]] std::size_t HashNextPrime(std::size_t size) noexcept;

}  // namespace du
