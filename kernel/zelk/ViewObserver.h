#pragma once

#include "zelk/MarkupHolderObserver.h"

namespace zelk {

/// Listens to what all views have.
class ViewObserver : public MarkupHolderObserver {
public:
  virtual void OnCameraChanged();
  virtual void OnTargetFrameRate();
  /// One of the colours or switches of `View::GetHighlightSettings` has changed.
  virtual void OnHighlightColorsChange();
  virtual void OnShowStatistics();
};

}  // namespace zelk
