#include <algorithm>
#include <array>
#include <cstddef>

#include "Join.h"
#include "guitree/TypeIconMap.h"
#include "hostcheck/CallTracer.h"

namespace hostcheck {

namespace {

constexpr std::array s_states{"none",          "visible",           "hidden",
                              "visible-mixed", "hidden-mixed",      "visible-all",
                              "hidden-all",    "thumbnail-visible", "thumbnail-hidden"};

std::string ShowState(int state)
{
  return static_cast<std::size_t>(state) < s_states.size() ? s_states.at(static_cast<std::size_t>(state))
                                                           : std::to_string(state);
}

// The state before stands in the lowest four bits, the new one in the next four.
std::string ShowChange(int word)
{
  return ShowState(word & 15) + " -> " + ShowState(word >> 4 & 15);
}

// How many icons it holds tells nobody anything: it works them out when it is asked, and forgets none that went.
std::string ShowPresence(const guitree::TypeIconMap* map)
{
  return map ? "yes" : "no";
}

}  // namespace

template <typename Map, typename ShowValue>
std::string CallTracer::_ShowEntries(const Map* map, ShowValue showValue) const
{
  if (!map) {
    return "null";
  }
  std::vector<std::string> entries;
  entries.reserve(map->size());
  for (const auto& entry : *map) {
    entries.push_back(_NameOfIdentity(entry.first) + ": " + showValue(entry));
  }
  if (!m_mapStyle.listOrder) {
    std::sort(entries.begin(), entries.end());
  }
  return Join(entries, '{', '}');
}

template <typename Map>
std::string CallTracer::_ShowWhole(const Map* map) const
{
  if (map && m_mapStyle.words) {
    return std::to_string(map->size());
  }
  return _ShowEntries(map, [](const auto& entry) { return std::to_string(static_cast<int>(entry.second)); });
}

std::string CallTracer::_ShowVisibleChanges(const du::HashMap<const zelk::BaseInstance*, int>* changes) const
{
  if (!m_mapStyle.words) {
    return _ShowWhole(changes);
  }
  return _ShowEntries(changes, [](const auto& entry) { return ShowChange(entry.second); });
}

std::string CallTracer::_ShowIconChanges(const du::HashMap<const zelk::BaseInstance*, int>* changes) const
{
  if (!m_mapStyle.words) {
    return _ShowWhole(changes);
  }
  return _ShowEntries(changes, [this](const auto& entry) {
    const auto before = m_icons.find(entry.first);
    return (before != m_icons.end() ? std::to_string(before->second) + ' ' : "") + "-> " + std::to_string(entry.second);
  });
}

template <typename Map>
void CallTracer::_RememberIcons(const Map* map)
{
  if (!map || !m_mapStyle.words) {
    return;
  }
  for (const auto& entry : *map) {
    m_icons[entry.first] = entry.second;
  }
}

void CallTracer::UpdateVisAndTypeIconChanges(
    const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
    const du::HashMap<const zelk::BaseInstance*, int>* visibleChangeMap, guitree::TypeIconMap* typeIconMap,
    const du::HashMap<const zelk::BaseInstance*, int>* typeIconChangeMap)
{
  _OnCall("UpdateVisAndTypeIconChanges(visible=" + _ShowWhole(visibleMap)
          + ", visibleChanges=" + _ShowVisibleChanges(visibleChangeMap) + ", typeIcons=" + ShowPresence(typeIconMap)
          + ", typeIconChanges=" + _ShowIconChanges(typeIconChangeMap) + ")");
  _RememberIcons(typeIconChangeMap);
  ForwardingHost::UpdateVisAndTypeIconChanges(visibleMap, visibleChangeMap, typeIconMap, typeIconChangeMap);
}

void CallTracer::UpdateVisAndTypeIcons(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                                       guitree::TypeIconMap* typeIconMap)
{
  _OnCall("UpdateVisAndTypeIcons(visible=" + _ShowWhole(visibleMap) + ", typeIcons=" + ShowPresence(typeIconMap) + ")");
  m_icons.clear();
  _RememberIcons(typeIconMap);
  ForwardingHost::UpdateVisAndTypeIcons(visibleMap, typeIconMap);
}

}  // namespace hostcheck
