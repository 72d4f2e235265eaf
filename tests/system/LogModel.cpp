#include "LogModel.h"

#include "IconRules.h"

namespace systemtest {

int LogModel::GetState(const zelk::BaseInstance* instance) const
{
  const auto known = m_visible.GetStates().find(instance);
  return known == m_visible.GetStates().end() ? int{guitree::VisibleStateHidden} : known->second;
}

void LogModel::ClearChanges()
{
  m_visible.ClearChanges();
  m_iconChanges.clear();
}

int LogModel::FindIcon(const zelk::BaseInstance* instance, const du::SmartPtr<zelk::ShapeScene>& shown)
{
  const auto known = m_icons.find(instance);
  if (known != m_icons.end()) {
    return known->second;
  }
  const auto& part = dynamic_cast<const zelk::Instance&>(*instance);
  du::SmartPtr<zelk::ShapeInstance> shape;
  const bool isLoaded = shown && shown->GetShapeInstance(du::ConstSmartPtr<zelk::Instance>(&part), shape);
  return m_icons[instance] = ChooseIcon(part, m_scene) + (isLoaded ? 1 : 0);
}

void LogModel::MarkIcon(const zelk::BaseInstance* instance, const du::SmartPtr<zelk::ShapeScene>& shown)
{
  const auto known = m_icons.find(instance);
  const int before = known == m_icons.end() ? -1 : known->second;
  m_icons.erase(instance);
  const int icon = FindIcon(instance, shown);
  if (icon != before) {
    m_iconChanges[instance] = icon;
  }
}

void LogModel::SetLoaded(const zelk::BaseInstance* instance, bool isLoaded, const du::SmartPtr<zelk::ShapeScene>& shown)
{
  const int icon = FindIcon(instance, shown);
  if ((icon % 2 == 1) != isLoaded) {
    _NoteIcon(instance, isLoaded ? icon + 1 : icon - 1);
  }
}

void LogModel::SetCompared(const zelk::BaseInstance* instance, const du::SmartPtr<zelk::ShapeScene>& shown)
{
  static_cast<void>(FindIcon(instance, shown));
  _NoteIcon(instance, ChooseIcon(dynamic_cast<const zelk::Instance&>(*instance), m_scene));
}

void LogModel::Report(const zelk::ShapeInstance& shapeInstance, bool isShown)
{
  du::SmartPtr<zelk::Instance> instance;
  shapeInstance.GetInstance(instance);
  const auto plain = !isShown                      ? guitree::CompHidden
                     : shapeInstance.IsThumbnail() ? guitree::CompThumbnailVisible
                                                   : guitree::CompVisible;
  m_visible.SetVisible(instance.Get(), plain, true);
}

void LogModel::CheckVisible(const zelk::BaseInstance& instance)
{
  const int state = GetState(&instance);
  const int plain = state == 7 ? 3 : state == 8 ? 2 : state % 2;
  m_visible.SetVisible(&instance, static_cast<guitree::ECompVisible>(plain), true);
}

void LogModel::Remove(const zelk::BaseInstance& instance)
{
  m_visible.Remove(&instance);
  m_icons.erase(&instance);
}

// Two changes take each other back.
void LogModel::_NoteIcon(const zelk::BaseInstance* instance, int icon)
{
  m_icons[instance] = icon;
  if (m_iconChanges.erase(instance) == 0) {
    m_iconChanges[instance] = icon;
  }
}

}  // namespace systemtest
