#include "zelk/ViewObserver.h"

namespace zelk {

void ViewObserver::OnCameraChanged() {}
void ViewObserver::OnTargetFrameRate() {}
void ViewObserver::OnHighlightColorsChange() {}
void ViewObserver::OnShowStatistics() {}

}  // namespace zelk
