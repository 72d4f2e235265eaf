#include "SiblingGroups.h"

#include <cstddef>

#include "InstanceBits.h"

namespace memkernel {
namespace {

/// A list beyond the first number gets an index, and loses it below the second.
constexpr std::size_t s_longestPlainList = 16;
constexpr std::size_t s_shortestIndexedList = 8;

}  // namespace

void SiblingGroups::OnLinked(Instance& parent, Instance& child)
{
  if (parent._Has(InstanceLongList)) {
    m_indexes.at(&parent).Enter(child);
    return;
  }
  std::size_t count = 0;
  for (const Instance* sibling = parent.m_firstChild; sibling; sibling = sibling->m_nextSibling) {
    ++count;
  }
  if (count > s_longestPlainList) {
    m_indexes.try_emplace(&parent, parent);
    parent._SetFlags(InstanceLongList, true);
    return;
  }
  _MarkGroup(parent, *child.m_product, nullptr);
}

void SiblingGroups::OnUnlinking(Instance& parent, Instance& child)
{
  if (!parent._Has(InstanceLongList)) {
    child._SetFlags(InstanceHasGroup | InstanceFirstOfGroup, false);
    _MarkGroup(parent, *child.m_product, &child);
    return;
  }
  SiblingIndex& index = m_indexes.at(&parent);
  index.Leave(child);
  if (index.GetChildCount() < s_shortestIndexedList) {
    Forget(parent);
  }
}

void SiblingGroups::Forget(Instance& parent)
{
  if (parent._Has(InstanceLongList)) {
    parent._SetFlags(InstanceLongList, false);
    m_indexes.erase(&parent);
  }
}

const Instance* SiblingGroups::GetFirst(const Instance& parent, const Product& product) const
{
  const auto entry = m_indexes.find(&parent);
  return entry == m_indexes.end() ? nullptr : entry->second.GetFirst(product);
}

void SiblingGroups::_MarkGroup(const Instance& parent, const Product& product, const Instance* left)
{
  Instance* first = nullptr;
  for (Instance* sibling = parent.m_firstChild; sibling; sibling = sibling->m_nextSibling) {
    if (sibling->m_product != &product || sibling == left) {
      continue;
    }
    if (!first) {
      first = sibling;
      first->_SetFlags(InstanceHasGroup | InstanceFirstOfGroup, false);
    } else {
      first->_SetFlags(InstanceHasGroup | InstanceFirstOfGroup, true);
      sibling->_SetFlags(InstanceFirstOfGroup, false);
      sibling->_SetFlags(InstanceHasGroup, true);
    }
  }
}

}  // namespace memkernel
