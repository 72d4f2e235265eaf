#include "RecordingTreeObserver.h"

namespace kernelcontract {

void RecordingTreeObserver::OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                                             const du::SmartPtr<zelk::BaseInstance>& parent, const du::Symbol& name)
{
  m_names[instance.Get()] = std::string(name);
  _WriteEvent("create " + std::string(name) + " < " + GetName(parent));
}

void RecordingTreeObserver::OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                                             const du::SmartPtr<zelk::BaseInstance>& parent)
{
  if (onRemove) {
    onRemove(instance);
  }
  _WriteEvent("remove " + GetName(instance) + " < " + GetName(parent));
}

void RecordingTreeObserver::OnInstanceName(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  _WriteEvent("name " + GetName(instance));
}

std::string RecordingTreeObserver::GetName(const du::SmartPtr<zelk::BaseInstance>& instance) const
{
  if (!instance) {
    return "-";
  }
  const auto known = m_names.find(instance.Get());
  return known == m_names.end() ? "?" : known->second;
}

void RecordingTreeObserver::_WriteEvent(const std::string& line)
{
  _Write(line);
  if (onEvent) {
    onEvent();
  }
}

}  // namespace kernelcontract
