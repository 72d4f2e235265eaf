#include "Rows.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace systemtest {

void Rows::Clear()
{
  m_rows.clear();
  m_rows[nullptr];
}

Rows::Row& Rows::Add(const BasePtr& instance, const std::vector<BasePtr>& ancestors)
{
  const auto above = std::find_if(ancestors.begin(), ancestors.end(),
                                  [this](const BasePtr& ancestor) { return m_rows.contains(ancestor.Get()); });
  const zelk::BaseInstance* const parent = above == ancestors.end() ? nullptr : above->Get();
  _TakeFromParent(instance.Get());
  Row& row = m_rows[instance.Get()];
  std::vector<const zelk::BaseInstance*> children = std::move(row.children);
  row = {};
  row.instance = instance;
  row.parent = parent;
  row.children = std::move(children);
  row.name = instance->GetObjectName();
  m_rows[parent].children.push_back(instance.Get());
  return row;
}

void Rows::RemoveBranch(const zelk::BaseInstance& instance)
{
  std::vector<const zelk::BaseInstance*> gone;
  ForEach([&](const Row& row) {
    const auto line = ListFrom(row.instance);
    if (std::any_of(line.begin(), line.end(), [&](const BasePtr& step) { return step == &instance; })) {
      gone.push_back(row.instance.Get());
    }
  });
  for (const zelk::BaseInstance* row : gone) {
    _TakeFromParent(row);
  }
  for (const zelk::BaseInstance* row : gone) {
    m_rows.erase(row);
  }
}

Rows::Row* Rows::Find(const zelk::BaseInstance* instance)
{
  const auto row = m_rows.find(instance);
  return !instance || row == m_rows.end() ? nullptr : &row->second;
}

std::vector<std::string> Rows::ToText() const
{
  std::vector<std::string> text;
  _AddText(nullptr, "", text);
  return text;
}

std::vector<std::string> Rows::SortSiblings(const std::vector<std::string>& text)
{
  // Each line behind all those that it stands below.
  std::vector<std::pair<std::vector<std::string>, std::string>> paths;
  std::vector<std::string> path;
  for (const std::string& line : text) {
    path.resize(line.find_first_not_of(' ') / 2);
    path.push_back(line);
    paths.emplace_back(path, line);
  }
  std::sort(paths.begin(), paths.end());
  std::vector<std::string> sorted;
  for (const auto& [place, line] : paths) {
    sorted.push_back(line);
  }
  return sorted;
}

std::vector<BasePtr> Rows::ListFrom(const BasePtr& parent)
{
  std::vector<BasePtr> line;
  for (BasePtr step = parent; step;) {
    line.push_back(step);
    BasePtr next;
    step->GetBaseParent(next);
    step = next;
  }
  return line;
}

// Names may hold anything, and stand before it.
void Rows::CutLook(std::string& line)
{
  constexpr std::string_view stateWord = " state ";
  constexpr std::string_view iconWord = " icon ";
  const std::size_t begin = line.rfind(stateWord);
  const std::size_t icon = line.rfind(iconWord);
  const std::size_t end = std::min(line.find(' ', icon + iconWord.size()), line.size());
  line.erase(begin, end - begin);
}

std::string Rows::NameOf(const zelk::BaseInstance& instance)
{
  return std::string(instance.GetInstanceKey().GetView()) + '/' + std::string(instance.GetInstanceSubKey().GetView());
}

void Rows::_TakeFromParent(const zelk::BaseInstance* instance)
{
  const auto row = m_rows.find(instance);
  if (row == m_rows.end()) {
    return;
  }
  const auto parent = m_rows.find(row->second.parent);
  if (parent != m_rows.end()) {
    std::erase(parent->second.children, instance);
  }
}

void Rows::_AddText(const zelk::BaseInstance* instance, const std::string& indent, std::vector<std::string>& out) const
{
  for (const zelk::BaseInstance* child : m_rows.at(instance).children) {
    const Row& row = m_rows.at(child);
    std::string line = indent + NameOf(*child) + " '" + row.name + "' state " + std::to_string(row.state) + " icon "
                       + std::to_string(row.icon);
    line += row.isSelected ? " selected" : "";
    line += row.hasHighlight ? " highlighted" : "";
    line += row.canBeOpened ? " ..." : "";
    out.push_back(line);
    _AddText(child, indent + "  ", out);
  }
}

}  // namespace systemtest
