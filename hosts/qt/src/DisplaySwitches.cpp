#include "DisplaySwitches.h"

#include "guitree/WorldTreeState.h"

namespace qthost {

DisplaySwitches& DisplaySwitches::Get()
{
  static DisplaySwitches s_switches;
  return s_switches;
}

void DisplaySwitches::SetShowsBodies(bool isOn)
{
  guitree::WorldTreeState::SetIsShowingBodies(isOn);
  Q_EMIT BodiesChanged(isOn);
}

void DisplaySwitches::SetCollapsesInstances(bool isOn)
{
  guitree::WorldTreeState::SetIsCollapsingInstances(isOn);
  Q_EMIT CollapseChanged(isOn);
}

}  // namespace qthost
