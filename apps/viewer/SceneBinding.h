#pragma once

#include <QObject>
#include <QTimer>
#include <set>
#include <utility>
#include <vector>

#include "ListHighlight.h"
#include "ModelScene.h"
#include "ModelView.h"
#include "PlacedShape.h"
#include "Session.h"
#include "ShapeFeeder.h"
#include "VisibilityQueue.h"
#include "du/SmartPtr.h"

namespace viewer {

/// Keeps what is drawn as the kernel's scene and selection have it, and hands what is pointed at in the windows over to
/// the selection. Ends before the session and the drawn scene.
class SceneBinding final : public QObject {
  Q_OBJECT

public:
  SceneBinding(Session& session, ModelScene& drawn);
  SceneBinding(const SceneBinding&) = delete;
  SceneBinding& operator=(const SceneBinding&) = delete;
  ~SceneBinding() override;

  /// What is picked and hovered in `view` comes to the selection from now on.
  void Follow(ModelView& view);
  /// Without bodies what is picked is the part.
  void SetPickingBodies(bool on) { m_picksBodies = on; }

  /// Tells the name of an instance, and highlights it with all that is below it once this has not been called for a
  /// moment; nothing any more for null, at once.
  void PointAt(const du::SmartPtr<memkernel::Instance>& instance);
  void SelectNothing();
  /// These work on what is selected, with all that is below it, and do nothing without a selection. As all that follow
  /// they are done soon, in small portions between which the window answers, and in the end as if one after the other.
  void HideSelected();
  void ShowSelected();
  void ShowOnlySelected();
  void ShowAll();
  /// All that is in the scene at these instances and below them. Whether any of it is otherwise, or will be by what was
  /// asked for before.
  bool SetVisible(const std::set<du::SmartPtr<zelk::Instance>>& instances, bool isVisible);

  [[nodiscard]] std::size_t GetSelectedCount() const;
  /// Whether what is selected and pointed at is drawn, and what is to be shown and hidden is; otherwise it will be
  /// soon.
  [[nodiscard]] bool IsUpToDate() const;
  [[nodiscard]] std::size_t GetLoadingCount() const noexcept { return m_feeder.GetWaitingCount(); }

Q_SIGNALS:
  void SelectionChanged();
  /// An empty name: nothing is pointed at.
  void PointedAt(const QString& name);

private:
  class SceneFollower;

  void _Add(const std::vector<PlacedShape>& shapes);
  void _OnOpened(const QString& file);
  void _ForgetAll();
  void _SetSomeVisible();
  void _RefreshHighlights();
  void _OnPicked(const du::SmartPtr<memkernel::Instance>& instance, PickMode mode);
  void _HighlightPointed();
  [[nodiscard]] du::SmartPtr<memkernel::Instance> _ChooseRow(const du::SmartPtr<memkernel::Instance>& picked) const;
  [[nodiscard]] std::set<du::SmartPtr<zelk::Instance>> _GetListed(unsigned int list) const;

  Session& m_session;
  ModelScene& m_drawn;
  ShapeFeeder m_feeder;
  du::SmartPtr<SceneFollower> m_sceneFollower;
  ListHighlight m_selected;
  ListHighlight m_associated;
  du::SmartPtr<memkernel::Instance> m_pointed;
  QTimer m_pointedDue;
  bool m_picksBodies = true;
  VisibilityQueue m_visibility;
  QTimer m_visibilityDue;
  /// What was asked for while a file came into the scene. Parts of it that came later are to follow.
  std::vector<std::pair<VisibilityQueue::Instances, bool>> m_meanwhile;
};

}  // namespace viewer
