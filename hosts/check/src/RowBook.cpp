#include "RowBook.h"

namespace hostcheck {

bool RowBook::HasRow(const zelk::BaseInstance& instance) const
{
  const auto found = m_places.find(&instance);
  return found != m_places.end() && found->second.hasRow;
}

void RowBook::AddRow(const zelk::BaseInstance& instance)
{
  Place& place = m_places[&instance];
  if (place.hasRow) {
    return;
  }
  place.instance = &instance;
  place.hasRow = true;
  place.hold = nullptr;
  ++m_rowCount;
}

void RowBook::AddHidden(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  Place& place = m_places[instance.Get()];
  place.instance = instance.Get();
  place.hold = instance;
}

void RowBook::Move(const zelk::BaseInstance& instance, const zelk::BaseInstance& parent)
{
  Place& place = m_places.at(&instance);
  Place& parentPlace = m_places.at(&parent);
  if (place.parent == &parentPlace || _IsInBranch(&parentPlace, place)) {
    return;
  }
  Place* before = place.parent;
  _Unlink(place);
  _Link(place, parentPlace);
  _EraseUnused(before);
}

void RowBook::MoveToTop(const zelk::BaseInstance& instance)
{
  Place& place = m_places.at(&instance);
  Place* before = place.parent;
  _Unlink(place);
  _EraseUnused(before);
}

void RowBook::RemoveBranch(const zelk::BaseInstance& instance)
{
  const auto found = m_places.find(&instance);
  if (found == m_places.end()) {
    return;
  }
  Place* top = &found->second;
  Place* above = top->parent;
  Place* place = top;
  while (place) {
    if (place->firstChild) {
      place = place->firstChild;
      continue;
    }
    Place* parent = place == top ? nullptr : place->parent;
    _Erase(*place);
    place = parent;
  }
  _EraseUnused(above);
}

void RowBook::Clear()
{
  m_places.clear();
  m_rowCount = 0;
}

bool RowBook::_IsInBranch(const Place* place, const Place& branch)
{
  // Most rows that move are leaves.
  if (!branch.firstChild) {
    return place == &branch;
  }
  while (place && place != &branch) {
    place = place->parent;
  }
  return place != nullptr;
}

void RowBook::_Link(Place& place, Place& parent)
{
  place.parent = &parent;
  place.next = parent.firstChild;
  if (place.next) {
    place.next->previous = &place;
  }
  parent.firstChild = &place;
}

void RowBook::_Unlink(Place& place)
{
  if (!place.parent) {
    return;
  }
  (place.previous ? place.previous->next : place.parent->firstChild) = place.next;
  if (place.next) {
    place.next->previous = place.previous;
  }
  place.parent = place.previous = place.next = nullptr;
}

void RowBook::_Erase(Place& leaf)
{
  m_rowCount -= leaf.hasRow ? 1U : 0U;
  _Unlink(leaf);
  m_places.erase(leaf.instance);
}

void RowBook::_EraseUnused(Place* place)
{
  while (place && !place->hasRow && !place->firstChild) {
    Place* parent = place->parent;
    _Erase(*place);
    place = parent;
  }
}

}  // namespace hostcheck
