#pragma once

#include <map>

#include "du/SmartPtr.h"
#include "sceneinfo/WalkingModel.h"
#include "zelk/Scene.h"
#include "zelk/ShapeInstance.h"
#include "zelk/ShapeScene.h"

namespace systemtest {

/// What the panel knows of one scene: visible states, type icons, and what has changed of them since the host was told
/// last. Plain maps, and each question worked out anew.
class LogModel {
public:
  using Icons = std::map<const zelk::BaseInstance*, int>;

  explicit LogModel(const du::SmartPtr<zelk::Scene>& scene) : m_scene(scene) {}

  [[nodiscard]] const sceneinfotest::WalkingModel& GetVisible() const { return m_visible; }
  [[nodiscard]] const Icons& GetIcons() const { return m_icons; }
  [[nodiscard]] const Icons& GetIconChanges() const { return m_iconChanges; }
  [[nodiscard]] int GetState(const zelk::BaseInstance* instance) const;
  [[nodiscard]] bool HasChanges() const { return !m_visible.GetChanges().empty() || !m_iconChanges.empty(); }
  void ClearChanges();

  /// `shown` is the scene that the panel shows: whether an instance counts as loaded is asked there, for all scenes.
  int FindIcon(const zelk::BaseInstance* instance, const du::SmartPtr<zelk::ShapeScene>& shown);
  void MarkIcon(const zelk::BaseInstance* instance, const du::SmartPtr<zelk::ShapeScene>& shown);
  void SetLoaded(const zelk::BaseInstance* instance, bool isLoaded, const du::SmartPtr<zelk::ShapeScene>& shown);
  void SetCompared(const zelk::BaseInstance* instance, const du::SmartPtr<zelk::ShapeScene>& shown);
  void Report(const zelk::ShapeInstance& shapeInstance, bool isShown);
  void CheckVisible(const zelk::BaseInstance& instance);
  void ForceHidden(const zelk::BaseInstance& instance) { m_visible.SetVisible(&instance, 2); }
  void Remove(const zelk::BaseInstance& instance);

private:
  void _NoteIcon(const zelk::BaseInstance* instance, int icon);

  const du::SmartPtr<zelk::Scene> m_scene;
  sceneinfotest::WalkingModel m_visible;
  Icons m_icons;
  Icons m_iconChanges;
};

}  // namespace systemtest
