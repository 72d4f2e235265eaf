#pragma once

#include "zelk/World.h"

namespace testsupport {

/// A world of two members and no services.
class PlainWorld : public zelk::World {
public:
  [[nodiscard]] du::TaskPool* GetTaskPool() const override { return nullptr; }
  [[nodiscard]] du::SmartPtr<zelk::ProgressController> GetProgressController() override { return {}; }
  [[nodiscard]] du::SmartPtr<zelk::Preferences> GetPreferences() override { return {}; }
};

}  // namespace testsupport
