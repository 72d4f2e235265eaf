#pragma once

#include "guitree/WorldTreeState.h"

namespace testsupport {

/// Sets the display switches of the process for the length of a scope.
class DisplaySwitches {
public:
  DisplaySwitches() = default;
  explicit DisplaySwitches(bool isCollapsing) { guitree::WorldTreeState::SetIsCollapsingInstances(isCollapsing); }
  DisplaySwitches(const DisplaySwitches&) = delete;
  DisplaySwitches& operator=(const DisplaySwitches&) = delete;
  ~DisplaySwitches()
  {
    guitree::WorldTreeState::SetIsShowingBodies(m_wasShowingBodies);
    guitree::WorldTreeState::SetIsCollapsingInstances(m_wasCollapsing);
  }

private:
  const bool m_wasShowingBodies = guitree::WorldTreeState::IsShowingBodies();
  const bool m_wasCollapsing = guitree::WorldTreeState::IsCollapsingInstances();
};

}  // namespace testsupport
