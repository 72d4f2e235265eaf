#pragma once

#include "texthost/TextHost.h"

/// A text host whose panel can be out of sight, as a docked panel behind another one is.
class PanelHost final : public texthost::TextHost {
public:
  void SetInSight(bool isInSight) noexcept { m_isInSight = isInSight; }
  [[nodiscard]] bool IsTreeVisibleInUI() const override { return m_isInSight; }

private:
  bool m_isInSight = true;
};
