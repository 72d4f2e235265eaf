#pragma once

#include <TopoDS_Shape.hxx>

#include <cstddef>
#include <unordered_map>
#include <vector>

class TopoDS_TShape;

namespace stepimport {

/// Tells which shapes have a part in common, be it a face or an edge: what is stored in such a part is stored in all of
/// them. Lives while the shapes are being told apart, and on one thread.
class SharedShapes {
public:
  /// The next shape, which may be null. Costs what the shape holds and no earlier one does.
  void Add(const TopoDS_Shape& shape);

  /// The group of each shape in the order in which they came, numbered from 0. Shapes of different groups have nothing
  /// in common.
  [[nodiscard]] std::vector<std::size_t> MakeGroups();

private:
  /// The shape that stands for all that are connected with `number`.
  [[nodiscard]] std::size_t _Find(std::size_t number);

  std::unordered_map<const TopoDS_TShape*, std::size_t> m_firstUsers;
  /// Another shape of the same group, or the shape itself.
  std::vector<std::size_t> m_next;
};

}  // namespace stepimport
