#include "zelk/SceneObserver.h"

namespace zelk {

void SceneObserver::OnLightsChanged() {}
void SceneObserver::OnSectionCutsChanged() {}
void SceneObserver::OnAppearanceChanged() {}

}  // namespace zelk
