#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "zelk/BaseTree.h"

namespace bench {

/// Another way to hold the rows of a tree for a panel. It may take its texts from the tree in advance, so that making
/// them is not counted against it.
class Peer {
public:
  Peer() = default;
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;
  virtual ~Peer() = default;

  /// Short enough for the name of a figure.
  [[nodiscard]] virtual std::string GetName() const = 0;
  /// Walks the tree and makes a row with a text for each instance.
  virtual void Fill() = 0;
  /// The number of rows, counted one by one, with each text read.
  [[nodiscard]] virtual std::size_t ReadAll() const = 0;
  virtual void Clear() = 0;
};

/// The peers of this build, for a tree that outlives them; none if they were left out.
[[nodiscard]] std::vector<std::unique_ptr<Peer>> MakePeers(const zelk::BaseTree& tree);

}  // namespace bench
