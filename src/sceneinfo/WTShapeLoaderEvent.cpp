#include "sceneinfo/WTShapeLoaderEvent.h"

#include "guitree/WorldTreeState.h"

namespace guitree {

WTShapeLoaderEvent::WTShapeLoaderEvent(WorldTreeState& state, const du::SmartPtr<zelk::ShapeInstance>& loadedInstance,
                                       const du::SmartPtr<zelk::ShapeScene>& scene)
    : treeState(&state), shapeInstance(loadedInstance), shapeScene(scene)
{
  state.m_liveLoads.insert(this);
}

WTShapeLoaderEvent::~WTShapeLoaderEvent()
{
  if (treeState) {
    treeState->_ForgetLoad(*this);
  }
}

du::Symbol WTShapeLoaderEvent::GetObjectClass() const
{
  static const du::Symbol s_class("guitree::WTShapeLoaderEvent");
  return s_class;
}

void WTShapeLoaderEvent::OnComplete(unsigned short /*status*/)
{
  if (treeState) {
    treeState->WTShapeLoaderEventComplete(this);
  }
  // From here on its last holder may be a worker, which must not reach the state.
  treeState = nullptr;
  shapeInstance.Reset();
  shapeScene.Reset();
}

}  // namespace guitree
