#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "du/SmartPtr.h"
#include "zelk/BaseInstance.h"

namespace qthost {

/// The rows of a model: one flat record each, found by number or by instance in constant time. Instances are held, so
/// that a row can be asked at any time what it shows.
///
/// Rows are numbered from 1; a number stays with its row, and is used again after it. `s_top` stands above the topmost
/// rows.
///
/// After `Clear` the table is being filled: rows only come, each as the last below its parent, and the lists of
/// children are made in one go by the first operation that needs them, or by `FinishFilling`.
class RowTable {
public:
  using Id = std::uint32_t;

  static constexpr Id s_top = 0;
  static constexpr Id s_none = 0xFFFFFFFFU;

  enum Mark : std::uint8_t {
    HasPlaceholder = 1,
    HasHighlight = 2,
    IsSelected = 4,
    /// Not linked yet, or below such a row.
    IsStaged = 8,
    IsDoomed = 16,
    /// What views know.
    IsToldSelected = 32,
  };

  RowTable();

  void Clear();
  /// Room for so many rows.
  void Reserve(std::size_t count);
  void FinishFilling();

  [[nodiscard]] bool IsFilling() const noexcept { return m_isFilling; }
  [[nodiscard]] std::size_t GetCount() const noexcept { return m_rows.size() - 1 - m_free.size(); }
  /// `s_none` for an instance without a row, and for null.
  [[nodiscard]] Id Find(const zelk::BaseInstance* instance) const;
  [[nodiscard]] bool IsRow(Id row) const { return row != s_top && row < m_rows.size() && m_rows[row].instance; }
  [[nodiscard]] const du::SmartPtr<zelk::BaseInstance>& GetInstance(Id row) const { return m_rows[row].instance; }
  [[nodiscard]] Id GetParent(Id row) const { return m_rows[row].parent; }
  [[nodiscard]] std::size_t GetChildCount(Id row) const { return m_rows[row].childCount; }
  [[nodiscard]] Id GetChild(Id row, std::size_t position) const
  {
    return m_children[m_rows[row].firstChild + position];
  }
  /// Among the children of its parent. Constant cost, but for a part of the list after edits in the middle of a long
  /// one.
  [[nodiscard]] std::size_t GetPosition(Id row) const;
  [[nodiscard]] bool Has(Id row, Mark mark) const { return (m_rows[row].marks & mark) != 0; }
  /// The last number that a row may have.
  [[nodiscard]] Id GetLastId() const { return static_cast<Id>(m_rows.size() - 1); }
  [[nodiscard]] bool IsInBranch(Id inner, Id top) const;

  void Set(Id row, Mark mark, bool isOn);
  /// A row as the last child; the instance must not have one.
  Id Append(const du::SmartPtr<zelk::BaseInstance>& instance, Id parent);
  /// A row that knows its parent and is not among its children yet.
  Id Make(const du::SmartPtr<zelk::BaseInstance>& instance, Id parent);
  /// Puts rows among the children of `parent`, which becomes theirs.
  void Link(Id parent, std::size_t position, std::span<const Id> rows);
  /// Takes rows out of the children of `parent`.
  void Unlink(Id parent, std::size_t position, std::size_t count);
  /// Forgets a row that is not linked, and all below it.
  void Erase(Id row);

  /// The bytes that the table keeps.
  [[nodiscard]] std::size_t GetBytes() const;

private:
  struct Row {
    du::SmartPtr<zelk::BaseInstance> instance;
    Id parent = s_top;
    /// Where the children stand in `m_children`.
    std::uint32_t firstChild = 0;
    std::uint32_t childCount = 0;
    /// How many places are kept there.
    std::uint32_t capacity = 0;
    /// Where the row was when it was looked up last: at most `shift` of its parent away.
    mutable std::uint32_t position = 0;
    /// How far children may have gone from their positions.
    mutable std::uint16_t shift = 0;
    std::uint8_t marks = 0;
  };

  /// Where the search for an instance begins, and what its slot is marked with.
  struct Key {
    std::size_t slot;
    std::uint8_t tag;
  };

  [[nodiscard]] Key _GetKey(const zelk::BaseInstance* instance) const;
  void _Enter(Id row);
  void _Leave(const zelk::BaseInstance* instance);
  void _GrowSlots(std::size_t count);
  Id _Make(const du::SmartPtr<zelk::BaseInstance>& instance, Id parent);
  void _Place(Id row);
  void _MakeRoom(Row& parent, std::size_t count);
  /// After children from `position` on have moved by `distance`.
  void _NoteMoved(const Row& parent, std::size_t position, std::size_t distance) const;
  void _Renumber(const Row& parent, std::size_t position) const;

  std::vector<Row> m_rows;
  std::vector<Id> m_free;
  std::vector<Id> m_children;
  /// A hash table of rows by their instances. What is in a slot is told by a tag of its own, 0 for nothing: it saves
  /// nearly all looks at rows, which lie all over the memory.
  std::vector<Id> m_slots;
  std::vector<std::uint8_t> m_tags;
  unsigned int m_slotShift = 0;
  bool m_isFilling = true;
};

}  // namespace qthost
