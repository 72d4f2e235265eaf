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

/// A filled and filtered model of the rows that takes more of them.
class InsertionPeer {
public:
  InsertionPeer() = default;
  InsertionPeer(const InsertionPeer&) = delete;
  InsertionPeer& operator=(const InsertionPeer&) = delete;
  virtual ~InsertionPeer() = default;

  [[nodiscard]] virtual std::string GetName() const = 0;
  /// Appends rows, one by one, to one parent in the middle of the tree. They pass the filter.
  virtual void Insert(std::size_t rows) = 0;
  /// Removes them, and answers how many of them were shown.
  [[nodiscard]] virtual std::size_t TakeBack() = 0;
};

/// As `MakePeers`. With `withHiddenBranch` there is one in which the branch is hidden until the first row comes; it
/// takes minutes where the branch is long.
[[nodiscard]] std::vector<std::unique_ptr<InsertionPeer>> MakeInsertionPeers(const zelk::BaseTree& tree,
                                                                             bool withHiddenBranch);

/// A model of the rows behind a filter that keeps the ancestors of a match.
class FilterPeer {
public:
  FilterPeer() = default;
  FilterPeer(const FilterPeer&) = delete;
  FilterPeer& operator=(const FilterPeer&) = delete;
  virtual ~FilterPeer() = default;

  [[nodiscard]] virtual std::string GetName() const = 0;
  /// Filters by a text in the names, whatever the case, and reads each row that is left, once.
  virtual void Filter(const std::string& text) = 0;
  /// The rows that were read.
  [[nodiscard]] virtual std::size_t GetRowCount() const = 0;
  /// Forgets the filter.
  virtual void Clear() = 0;
};

/// As `MakePeers`; each is filled with the rows of the tree.
[[nodiscard]] std::vector<std::unique_ptr<FilterPeer>> MakeFilterPeers(const zelk::BaseTree& tree);

/// The peers of this build, for a tree that outlives them; none if they were left out.
[[nodiscard]] std::vector<std::unique_ptr<Peer>> MakePeers(const zelk::BaseTree& tree);

}  // namespace bench
