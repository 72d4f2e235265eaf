#pragma once

#include <cstddef>
#include <unordered_map>

#include "zelk/BaseInstance.h"

namespace hostcheck {

/// Which instances have a row and which lies below which. An ancestor without a row has a place as long as there are
/// rows below it, and is held for that time: its address stays its own. Instances with a row are not held.
class RowBook {
public:
  [[nodiscard]] std::size_t GetRowCount() const noexcept { return m_rowCount; }
  [[nodiscard]] bool HasRow(const zelk::BaseInstance& instance) const;
  /// Whether the instance has a place: a row, or rows below it.
  [[nodiscard]] bool HasPlace(const zelk::BaseInstance& instance) const { return m_places.contains(&instance); }

  /// Gives the instance a row, which it keeps if it has one. It stays where it is, at the top to begin with.
  void AddRow(const zelk::BaseInstance& instance);
  /// Gives a place to an instance that has none, at the top, and holds it until the place goes.
  void AddHidden(const du::SmartPtr<zelk::BaseInstance>& instance);
  /// Moves the place of `instance` below that of `parent`. Both must have one; nothing happens if `parent` is in the
  /// branch of `instance`.
  void Move(const zelk::BaseInstance& instance, const zelk::BaseInstance& parent);
  void MoveToTop(const zelk::BaseInstance& instance);

  /// Takes the row and all below it, and the hidden ancestors above that are left without rows.
  void RemoveBranch(const zelk::BaseInstance& instance);
  void Clear();

private:
  struct Place {
    const zelk::BaseInstance* instance = nullptr;
    du::SmartPtr<zelk::BaseInstance> hold;
    Place* parent = nullptr;
    Place* firstChild = nullptr;
    Place* previous = nullptr;
    Place* next = nullptr;
    bool hasRow = false;
  };

  [[nodiscard]] static bool _IsInBranch(const Place* place, const Place& branch);
  static void _Link(Place& place, Place& parent);
  void _Unlink(Place& place);
  void _Erase(Place& leaf);
  void _EraseUnused(Place* place);

  std::unordered_map<const zelk::BaseInstance*, Place> m_places;
  std::size_t m_rowCount = 0;
};

}  // namespace hostcheck
