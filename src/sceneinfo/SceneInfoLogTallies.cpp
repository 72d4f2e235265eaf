// What a SceneInfoLog keeps of the children of long lists.

#include <typeinfo>

#include "guitree/SceneInfoLog.h"
#include "zelk/Instance.h"

namespace guitree {
namespace {

/// A look at fewer children costs a fraction of a microsecond. What is kept of them would cost, with what the kernel
/// keeps for its revision, some 100 bytes for each parent of a tree.
constexpr std::size_t s_shortestKeptList = 17;

[[nodiscard]] bool IsLeftOutOfVisibility(const zelk::BaseInstance& child)
{
  const auto* instance = zelk::AsInstance(&child);
  return instance && instance->Is3dSymbol();
}

}  // namespace

void SceneInfoLog::ChildTally::Count(VisibleState state, int change)
{
  m_counts[_GetKind(state)] += static_cast<std::uint32_t>(change);
}

bool SceneInfoLog::ChildTally::IsMixed() const
{
  return m_counts[Mixed] != 0 || (m_counts[Visible] != 0 && m_counts[Hidden] != 0);
}

VisibleState SceneInfoLog::ChildTally::GetAggregate() const
{
  if (IsMixed()) {
    return VisibleStateVisibleMixed;
  }
  return m_counts[Visible] != 0 ? VisibleStateVisibleAllChildren : VisibleStateVisible;
}

SceneInfoLog::ChildTally::Kind SceneInfoLog::ChildTally::_GetKind(VisibleState state)
{
  switch (state) {
    case VisibleStateVisible:
    case VisibleStateVisibleAllChildren:
    case VisibleStateHiddenAllChildren:
    case VisibleStateThumbnailVisible:
      return Visible;
    case VisibleStateHidden:
      return Hidden;
    case VisibleStateVisibleMixed:
    case VisibleStateHiddenMixed:
    case VisibleStateThumbnailHidden:
      return Mixed;
    case VisibleStateNone:
      break;
  }
  return Ignored;
}

void SceneInfoLog::_NoteChildAdded(const zelk::BaseInstance& parent, const zelk::BaseInstance& child)
{
  const auto entry = m_tallies.find(&parent);
  if (entry == m_tallies.end()) {
    return;
  }
  ChildTally& tally = entry->second;
  if (parent.GetChildListRevision() != tally.revision + 1) {
    // More has happened than that this child has come, or it was there when the children were counted.
    m_tallies.erase(entry);
    return;
  }
  ++tally.revision;
  if (!IsLeftOutOfVisibility(child)) {
    tally.Count(_GetState(&child));
  }
}

SceneInfoLog::ChildTally* SceneInfoLog::_FindTally(const zelk::BaseInstance& parent)
{
  const auto entry = m_tallies.find(&parent);
  if (entry == m_tallies.end()) {
    return nullptr;
  }
  if (entry->second.revision != parent.GetChildListRevision()) {
    m_tallies.erase(entry);
    return nullptr;
  }
  return &entry->second;
}

void SceneInfoLog::_MoveInTally(const zelk::BaseInstance& child, VisibleState state)
{
  if (m_tallies.empty()) {
    return;
  }
  du::SmartPtr<zelk::BaseInstance> parent;
  child.GetBaseParent(parent);
  ChildTally* tally = parent ? _FindTally(*parent) : nullptr;
  if (tally && !IsLeftOutOfVisibility(child)) {
    tally->Count(_GetState(&child), -1);
    tally->Count(state);
  }
}

bool SceneInfoLog::_MayKeepTallies() const
{
  return typeid(*this) == typeid(SceneInfoLog);
}

VisibleState SceneInfoLog::_WalkChildren(const zelk::BaseInstance& parent)
{
  ChildTally tally;
  std::size_t length = 0;
  du::SmartPtr<zelk::BaseInstance> child;
  for (parent.GetBaseFirstChild(child); child; child->GetBaseNextSibling(child)) {
    if (++length == s_shortestKeptList && _MayKeepTallies()) {
      tally.revision = parent.GetChildListRevision();
    }
    if (!IsLeftOutOfVisibility(*child)) {
      tally.Count(GetCompVisibleState(child));
    }
    // What is kept must know all children; otherwise the first ones that make it mixed decide.
    if (tally.revision == 0 && tally.IsMixed()) {
      return VisibleStateVisibleMixed;
    }
  }
  if (tally.revision != 0) {
    m_tallies.insert_or_assign(&parent, tally);
  }
  return tally.GetAggregate();
}

}  // namespace guitree
