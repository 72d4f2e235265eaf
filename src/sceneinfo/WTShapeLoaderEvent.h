#pragma once

#include "du/SmartPtr.h"
#include "zelk/ShapeInstance.h"
#include "zelk/ShapeScene.h"
#include "zelloader/ShapeLoaderEvent.h"

namespace guitree {

class WorldTreeState;

/// The load of one shape that a `WorldTreeState` has asked for. Lives until it has completed; the state, which knows
/// each event up to then, may end before that. Owner's thread; one that has completed may end on any.
class WTShapeLoaderEvent : public zelloader::ShapeLoaderEvent {
public:
  WTShapeLoaderEvent(WorldTreeState& state, const du::SmartPtr<zelk::ShapeInstance>& loadedInstance,
                     const du::SmartPtr<zelk::ShapeScene>& scene);
  WTShapeLoaderEvent(const WTShapeLoaderEvent&) = delete;
  WTShapeLoaderEvent& operator=(const WTShapeLoaderEvent&) = delete;
  ~WTShapeLoaderEvent() override;

  [[nodiscard]] du::Symbol GetObjectClass() const override;

  /// Null after completion, and once the state has ended.
  WorldTreeState* treeState;
  /// Both null after completion.
  du::SmartPtr<zelk::ShapeInstance> shapeInstance;
  du::SmartPtr<zelk::ShapeScene> shapeScene;

protected:
  void OnComplete(unsigned short status) override;
};

}  // namespace guitree
