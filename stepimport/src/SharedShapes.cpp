#include "SharedShapes.h"

#include <TopoDS_Iterator.hxx>
#include <TopoDS_TShape.hxx>

namespace stepimport {

void SharedShapes::Add(const TopoDS_Shape& shape)
{
  const std::size_t number = m_next.size();
  m_next.push_back(number);
  std::vector<TopoDS_Shape> left;
  if (!shape.IsNull()) {
    left.push_back(shape);
  }
  while (!left.empty()) {
    const TopoDS_Shape part = left.back();
    left.pop_back();
    const auto [place, isNew] = m_firstUsers.try_emplace(part.TShape().get(), number);
    if (!isNew) {
      m_next[_Find(number)] = _Find(place->second);
      continue;
    }
    for (TopoDS_Iterator child(part, false, false); child.More(); child.Next()) {
      left.push_back(child.Value());
    }
  }
}

std::vector<std::size_t> SharedShapes::MakeGroups()
{
  std::vector<std::size_t> groups(m_next.size());
  std::unordered_map<std::size_t, std::size_t> numbers;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    groups[i] = numbers.try_emplace(_Find(i), numbers.size()).first->second;
  }
  return groups;
}

std::size_t SharedShapes::_Find(std::size_t number)
{
  while (m_next[number] != number) {
    m_next[number] = m_next[m_next[number]];
    number = m_next[number];
  }
  return number;
}

}  // namespace stepimport
