#pragma once

#include <set>
#include <utility>

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "zelk/BaseInstance.h"

namespace structure_utils {

/// The instances that some search of the host has found, for filters that show only these. It does not change once it
/// is made, so any thread may read it.
class TreeResultsList : public virtual du::RefCounted {
public:
  explicit TreeResultsList(std::set<du::SmartPtr<zelk::BaseInstance>> instances) : m_instances(std::move(instances)) {}

  [[nodiscard]] const std::set<du::SmartPtr<zelk::BaseInstance>>& GetInstances() const noexcept { return m_instances; }

private:
  const std::set<du::SmartPtr<zelk::BaseInstance>> m_instances;
};

}  // namespace structure_utils
