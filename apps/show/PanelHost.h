#pragma once

#include <map>
#include <string>

#include "texthost/TextHost.h"

/// A text host whose panel can be out of sight, as a docked panel behind another one is, and whose views can be of
/// several types. Holds the views that have been given one.
class PanelHost final : public texthost::TextHost {
public:
  void SetInSight(bool isInSight) noexcept { m_isInSight = isInSight; }
  void SetViewType(const du::SmartPtr<zelk::View>& view, const std::string& type) { m_viewTypes[view] = type; }

  [[nodiscard]] bool IsTreeVisibleInUI() const override { return m_isInSight; }
  [[nodiscard]] du::Symbol GetViewTypeString(const du::SmartPtr<zelk::View>& view) const override
  {
    const auto type = m_viewTypes.find(view);
    return type != m_viewTypes.end() ? du::Symbol(type->second) : TextHost::GetViewTypeString(view);
  }

private:
  bool m_isInSight = true;
  std::map<du::SmartPtr<zelk::View>, std::string> m_viewTypes;
};
