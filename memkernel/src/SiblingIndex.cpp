#include "SiblingIndex.h"

#include "InstanceBits.h"

namespace memkernel {
namespace {

/// How far a neighbour is looked for before the groups are chained.
constexpr unsigned int s_farthestLook = 32;

}  // namespace

SiblingIndex::SiblingIndex(const Instance& parent) : m_parent(parent)
{
  for (Instance* child = parent.m_firstChild; child; child = child->m_nextSibling) {
    Group& group = m_groups[child->m_product.Get()];
    _Enter(group, *child, {group.last, nullptr});
  }
}

void SiblingIndex::Enter(Instance& child)
{
  Group& group = m_groups[child.m_product.Get()];
  _Enter(group, child, group.count == 0 ? Neighbours() : _FindPlace(group, child));
}

void SiblingIndex::Leave(Instance& child)
{
  const auto entry = m_groups.find(child.m_product.Get());
  Group& group = entry->second;
  Instance* const next = &child == group.first ? _FindNext(group, child) : nullptr;
  Instance* const previous = &child == group.last ? _FindPrevious(group, child) : nullptr;
  _Unchain(child);
  child._SetFlags(InstanceHasGroup | InstanceFirstOfGroup, false);
  --m_childCount;
  if (--group.count == 0) {
    m_groups.erase(entry);
    return;
  }
  if (&child == group.first) {
    group.first = next;
  }
  if (&child == group.last) {
    group.last = previous;
  }
  group.first->_SetFlags(InstanceHasGroup | InstanceFirstOfGroup, group.count > 1);
}

const Instance* SiblingIndex::GetFirst(const Product& product) const
{
  const auto entry = m_groups.find(&product);
  return entry == m_groups.end() ? nullptr : entry->second.first;
}

void SiblingIndex::_Enter(Group& group, Instance& child, const Neighbours& place)
{
  const bool isFirst = group.count == 0 || place.next == group.first;
  const bool isLast = group.count == 0 || place.previous == group.last;
  if (isFirst) {
    if (group.first) {
      group.first->_SetFlags(InstanceFirstOfGroup, false);
      group.first->_SetFlags(InstanceHasGroup, true);
    }
    group.first = &child;
  }
  if (isLast) {
    group.last = &child;
  }
  ++group.count;
  ++m_childCount;
  child._SetFlags(InstanceFirstOfGroup, false);
  child._SetFlags(InstanceHasGroup, group.count > 1);
  group.first->_SetFlags(InstanceHasGroup | InstanceFirstOfGroup, group.count > 1);
  if (m_isChained) {
    _Chain(child, place);
  }
}

SiblingIndex::Neighbours SiblingIndex::_FindPlace(const Group& group, const Instance& child) const
{
  Instance* forward = child.m_nextSibling;
  Instance* backward = child._GetPreviousSibling();
  while (true) {
    if (!forward) {
      return {group.last, nullptr};
    }
    if (!backward) {
      return {nullptr, group.first};
    }
    if (forward->m_product == child.m_product) {
      return _CompletePlace(nullptr, forward);
    }
    if (backward->m_product == child.m_product) {
      return _CompletePlace(backward, nullptr);
    }
    forward = forward->m_nextSibling;
    backward = backward->_GetPreviousSibling();
  }
}

SiblingIndex::Neighbours SiblingIndex::_CompletePlace(Instance* previous, Instance* next) const
{
  if (!m_isChained) {
    return {previous, next};
  }
  return previous ? Neighbours{previous, m_chain.at(previous).next} : Neighbours{m_chain.at(next).previous, next};
}

Instance* SiblingIndex::_FindNext(const Group& group, const Instance& child)
{
  if (group.count <= 2) {
    return &child == group.last ? nullptr : group.last;
  }
  if (!m_isChained) {
    Instance* sibling = child.m_nextSibling;
    for (unsigned int step = 0; step < s_farthestLook && sibling; ++step) {
      if (sibling->m_product == child.m_product) {
        return sibling;
      }
      sibling = sibling->m_nextSibling;
    }
    _BuildChain();
  }
  return m_chain.at(&child).next;
}

Instance* SiblingIndex::_FindPrevious(const Group& group, const Instance& child)
{
  if (group.count <= 2) {
    return &child == group.first ? nullptr : group.first;
  }
  if (!m_isChained) {
    Instance* sibling = child._GetPreviousSibling();
    for (unsigned int step = 0; step < s_farthestLook && sibling; ++step) {
      if (sibling->m_product == child.m_product) {
        return sibling;
      }
      sibling = sibling->_GetPreviousSibling();
    }
    _BuildChain();
  }
  return m_chain.at(&child).previous;
}

void SiblingIndex::_BuildChain()
{
  m_isChained = true;
  m_chain.reserve(m_childCount);
  std::unordered_map<const Product*, Instance*> last;
  for (Instance* child = m_parent.m_firstChild; child; child = child->m_nextSibling) {
    Instance*& previous = last[child->m_product.Get()];
    _Chain(*child, {previous, nullptr});
    previous = child;
  }
}

void SiblingIndex::_Chain(Instance& child, const Neighbours& place)
{
  m_chain[&child] = place;
  if (place.previous) {
    m_chain[place.previous].next = &child;
  }
  if (place.next) {
    m_chain[place.next].previous = &child;
  }
}

void SiblingIndex::_Unchain(const Instance& child)
{
  const auto entry = m_chain.find(&child);
  if (entry == m_chain.end()) {
    return;
  }
  const Neighbours place = entry->second;
  m_chain.erase(entry);
  if (place.previous) {
    m_chain[place.previous].next = place.next;
  }
  if (place.next) {
    m_chain[place.next].previous = place.previous;
  }
}

}  // namespace memkernel
