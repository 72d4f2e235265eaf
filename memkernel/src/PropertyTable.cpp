#include "memkernel/PropertyTable.h"

#include <algorithm>
#include <tuple>

namespace memkernel {

std::vector<PropertyTable::Entry>::const_iterator PropertyTable::_Find(const du::Symbol& group,
                                                                       const du::Symbol& name) const
{
  return std::lower_bound(m_entries.begin(), m_entries.end(), std::tie(group, name),
                          [](const Entry& entry, const std::tuple<const du::Symbol&, const du::Symbol&>& key) {
                            return entry.group == std::get<0>(key) ? entry.name < std::get<1>(key)
                                                                   : entry.group < std::get<0>(key);
                          });
}

void PropertyTable::Set(const du::Symbol& group, const du::Symbol& name, const du::Symbol& value)
{
  const auto place = _Find(group, name);
  auto text = du::MakeSmart<TextValue>(value);
  if (place != m_entries.end() && place->group == group && place->name == name) {
    m_entries[static_cast<std::size_t>(place - m_entries.begin())].value = std::move(text);
    return;
  }
  m_entries.insert(place, {group, name, std::move(text)});
}

bool PropertyTable::Remove(const du::Symbol& group, const du::Symbol& name)
{
  if (!Find(group, name)) {
    return false;
  }
  m_entries.erase(_Find(group, name));
  return true;
}

const du::SmartPtr<TextValue>* PropertyTable::Find(const du::Symbol& group, const du::Symbol& name) const
{
  const auto place = _Find(group, name);
  return place != m_entries.end() && place->group == group && place->name == name ? &place->value : nullptr;
}

}  // namespace memkernel
