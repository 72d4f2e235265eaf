#include "testsupport/RowsHost.h"

#include <algorithm>
#include <utility>

namespace testsupport {

std::vector<std::string> RowsHost::GetRows() const
{
  std::vector<std::string> rows;
  _AddRowsBelow(nullptr, "", rows);
  return rows;
}

std::vector<std::string> RowsHost::GetSortedRows() const
{
  std::vector<std::string> rows = GetRows();
  std::sort(rows.begin(), rows.end());
  return rows;
}

void RowsHost::ClearTree()
{
  m_rows = {{nullptr, {}}};
  ForwardingHost::ClearTree();
}

void RowsHost::Reset()
{
  m_rows = {{nullptr, {}}};
  ForwardingHost::Reset();
}

void RowsHost::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& parent,
                              const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  du::SmartPtr<zelk::BaseInstance> above = parent;
  while (above && !m_rows.contains(above.Get())) {
    du::SmartPtr<zelk::BaseInstance> next;
    above->GetBaseParent(next);
    above = next;
  }
  _TakeFromParent(instance.Get());
  Row& row = m_rows[instance.Get()];
  row.instance = instance;
  row.parent = above.Get();
  m_rows[above.Get()].children.push_back(instance.Get());
  ForwardingHost::InstanceCreate(instance, parent, controller, assocHlight);
}

void RowsHost::InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& parent, bool repopulatePending)
{
  _TakeFromParent(instance.Get());
  _Erase(instance.Get());
  ForwardingHost::InstanceRemove(instance, parent, repopulatePending);
}

void RowsHost::_TakeFromParent(const zelk::BaseInstance* instance)
{
  const auto row = m_rows.find(instance);
  if (row != m_rows.end()) {
    std::erase(m_rows[row->second.parent].children, instance);
  }
}

void RowsHost::_Erase(const zelk::BaseInstance* instance)
{
  const auto row = m_rows.find(instance);
  if (row == m_rows.end()) {
    return;
  }
  for (const zelk::BaseInstance* child : std::exchange(row->second.children, {})) {
    _Erase(child);
  }
  m_rows.erase(instance);
}

void RowsHost::_AddRowsBelow(const zelk::BaseInstance* instance, const std::string& path,
                             std::vector<std::string>& out) const
{
  for (const zelk::BaseInstance* child : m_rows.at(instance).children) {
    const std::string childPath = path + (path.empty() ? "" : "/") + std::string(child->GetObjectName());
    out.push_back(childPath);
    _AddRowsBelow(child, childPath, out);
  }
}

}  // namespace testsupport
