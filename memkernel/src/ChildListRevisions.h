#pragma once

#include <cstdint>
#include <unordered_map>

namespace memkernel {

class Instance;

/// The revisions of the lists of children in one tree, kept for those parents alone that were asked for one. Owner's
/// thread; no reader of the tree comes here.
class ChildListRevisions {
public:
  /// Never 0.
  [[nodiscard]] std::uint64_t Get(const Instance& parent);
  void OnChildAdded(const Instance& parent) { _Raise(parent, 1); }
  void OnOtherChange(const Instance& parent) { _Raise(parent, 2); }
  /// For a parent that leaves the tree, and does not come back.
  void Forget(const Instance& parent);

private:
  void _Raise(const Instance& parent, std::uint64_t step);

  std::unordered_map<const Instance*, std::uint64_t> m_revisions;
};

}  // namespace memkernel
