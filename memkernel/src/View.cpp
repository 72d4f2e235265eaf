#include "memkernel/View.h"

#include <utility>

namespace memkernel {

ShapeView::ShapeView(const du::SmartPtr<zelk::Scene>& scene) : BasicView(scene) {}

ShapeView::~ShapeView()
{
  m_observers.DropAll();
}

bool ShapeView::RegisterObserver(zelk::ShapeViewObserver& observer, bool replay)
{
  if (!m_observers.Add(observer)) {
    return false;
  }
  if (replay) {
    const du::SmartPtr<ShapeView> self(this);
    m_observers.Replay(observer, [](const auto& tell) {
      if (tell([](zelk::ShapeViewObserver& told) { told.OnHighlightColorsChange(); })) {
        tell([](zelk::ShapeViewObserver& told) { told.OnRenderStyleChanged(); });
      }
    });
  }
  return true;
}

bool ShapeView::UnregisterObserver(zelk::ShapeViewObserver& observer)
{
  const du::SmartPtr<ShapeView> self(m_observers.IsDropped() ? nullptr : this);
  return m_observers.Remove(observer);
}

void ShapeView::NotifyCameraChanged()
{
  _Tell([](zelk::ShapeViewObserver& observer) { observer.OnCameraChanged(); });
}

void ShapeView::NotifyRenderStyleChanged()
{
  _Tell([](zelk::ShapeViewObserver& observer) { observer.OnRenderStyleChanged(); });
}

template <typename Call>
void ShapeView::_Tell(Call call)
{
  const du::SmartPtr<ShapeView> self(this);
  m_observers.Tell(std::move(call));
}

void ShapeView::_OnSettingsChanged()
{
  _Tell([](zelk::ShapeViewObserver& observer) { observer.OnHighlightColorsChange(); });
}

}  // namespace memkernel
