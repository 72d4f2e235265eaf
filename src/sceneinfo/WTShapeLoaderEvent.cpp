#include "sceneinfo/WTShapeLoaderEvent.h"

#include "guitree/WorldTreeState.h"

namespace guitree {

WTShapeLoaderEvent::WTShapeLoaderEvent(WorldTreeState& state, const du::SmartPtr<zelk::ShapeInstance>& loadedInstance,
                                       const du::SmartPtr<zelk::ShapeScene>& scene)
    : treeState(&state), shapeInstance(loadedInstance), shapeScene(scene), m_livingState(state.m_liveness)
{
}

WTShapeLoaderEvent::~WTShapeLoaderEvent()
{
  // A kernel that ends lets go of events without completing them.
  if (WorldTreeState* state = _GetLiveState()) {
    state->_ForgetLoad(*this);
  }
}

du::Symbol WTShapeLoaderEvent::GetObjectClass() const
{
  static const du::Symbol s_class("guitree::WTShapeLoaderEvent");
  return s_class;
}

void WTShapeLoaderEvent::OnComplete(unsigned short /*status*/)
{
  if (WorldTreeState* state = _GetLiveState()) {
    state->WTShapeLoaderEventComplete(this);
  }
  shapeInstance.Reset();
  shapeScene.Reset();
}

WorldTreeState* WTShapeLoaderEvent::_GetLiveState() const noexcept
{
  return treeState ? *m_livingState : nullptr;
}

}  // namespace guitree
