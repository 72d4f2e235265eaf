#pragma once

#include "du/SmartPtr.h"
#include "zelk/Instance.h"
#include "zelk/Scene.h"

namespace systemtest {

/// The icon of an instance as a table tells it: by number, from what the instance says of itself and what the scene
/// says of its shape. The collapse switch of the process counts.
[[nodiscard]] int ChooseIcon(const zelk::Instance& instance, const du::SmartPtr<zelk::Scene>& scene);
/// Whether that icon tells of a failure.
[[nodiscard]] bool HasIssue(const zelk::Instance& instance, const du::SmartPtr<zelk::Scene>& scene);

}  // namespace systemtest
