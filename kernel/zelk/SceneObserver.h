#pragma once

#include "zelk/MarkupHolderObserver.h"

namespace zelk {

/// Listens to what all scenes have.
class SceneObserver : public MarkupHolderObserver {
public:
  virtual void OnLightsChanged();
  virtual void OnSectionCutsChanged();
  virtual void OnAppearanceChanged();
};

}  // namespace zelk
