#pragma once

#include "zelk/World.h"

namespace testsupport {

/// A world of a few members and no workers.
class PlainWorld : public zelk::World {
public:
  du::SmartPtr<zelk::Preferences> preferences;

  [[nodiscard]] du::TaskPool* GetTaskPool() const override { return nullptr; }
  [[nodiscard]] du::SmartPtr<zelk::ProgressController> GetProgressController() override { return {}; }
  [[nodiscard]] du::SmartPtr<zelk::Preferences> GetPreferences() override { return preferences; }
};

}  // namespace testsupport
