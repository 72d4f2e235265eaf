#include "SceneBinding.h"

#include <utility>

#include "memkernel/SelectionManager.h"
#include "zelk/ShapeSceneObserver.h"

namespace viewer {

namespace {

using InstanceList = std::set<du::SmartPtr<zelk::Instance>>;

constexpr unsigned int s_selection = zelk::SelectionManager::SelectionList;
constexpr unsigned int s_associated = zelk::SelectionManager::AssocHlightList;
/// What the pointer only passes is not worth the work.
constexpr int s_restMs = 50;
/// As long as nobody notices that the window does not answer.
constexpr int s_portionMs = 10;

bool IsAtOrBelow(du::SmartPtr<zelk::BaseInstance> instance, const zelk::BaseInstance* top)
{
  while (instance && instance.Get() != top) {
    instance->GetBaseParent(instance);
  }
  return static_cast<bool>(instance);
}

/// What of these branches is in that of `file`, by the tops of it.
InstanceList FindWithin(const InstanceList& tops, const du::SmartPtr<zelk::Instance>& file)
{
  InstanceList within;
  for (const auto& top : tops) {
    if (IsAtOrBelow(top, file.Get())) {
      within.insert(top);
    } else if (IsAtOrBelow(file, top.Get())) {
      within.insert(file);
    }
  }
  return within;
}

}  // namespace

class SceneBinding::SceneFollower final : public zelk::ShapeSceneObserver {
public:
  SceneFollower(ModelScene& drawn, ShapeFeeder& feeder) : m_drawn(drawn), m_feeder(feeder) {}

  void OnShapeInstanceRemove(const du::SmartPtr<zelk::ShapeInstance>& shapeInstance) override
  {
    const auto instance = du::DynamicCast<memkernel::Instance>(_GetInstance(*shapeInstance));
    if (instance && m_drawn.Remove(*instance)) {
      m_feeder.CallOff(*instance->GetProduct()->GetShape());
    }
  }
  void OnShapeInstanceVisibility(const du::SmartPtr<zelk::ShapeInstance>& shapeInstance, bool visible) override
  {
    if (const auto instance = _GetInstance(*shapeInstance)) {
      m_drawn.SetVisible(*instance, visible);
    }
  }

private:
  [[nodiscard]] static du::SmartPtr<zelk::Instance> _GetInstance(const zelk::ShapeInstance& shapeInstance)
  {
    du::SmartPtr<zelk::Instance> instance;
    shapeInstance.GetInstance(instance);
    return instance;
  }

  ModelScene& m_drawn;
  ShapeFeeder& m_feeder;
};

SceneBinding::SceneBinding(Session& session, ModelScene& drawn)
    : m_session(session),
      m_drawn(drawn),
      m_feeder(session.GetWorld(), [&drawn](const memkernel::Shape& shape,
                                            const TopoDS_Shape& drawable) { drawn.PutShape(shape, drawable); }),
      m_sceneFollower(du::MakeSmart<SceneFollower>(drawn, m_feeder)),
      m_selected(session.GetWorld(), s_selection,
                 [&drawn](ModelScene::InstanceSet instances) { drawn.SetSelected(std::move(instances)); }),
      m_associated(session.GetWorld(), s_associated,
                   [&drawn](ModelScene::InstanceSet instances) { drawn.SetAssociated(std::move(instances)); }),
      m_visibility(session.GetScene())
{
  connect(&m_visibilityDue, &QTimer::timeout, this, &SceneBinding::_SetSomeVisible);
  m_pointedDue.setSingleShot(true);
  m_pointedDue.setInterval(s_restMs);
  connect(&m_pointedDue, &QTimer::timeout, this, &SceneBinding::_HighlightPointed);
  connect(&m_selected, &ListHighlight::Changed, this, &SceneBinding::SelectionChanged);
  connect(&session, &Session::Placed, this, &SceneBinding::_Add);
  connect(&session, &Session::Opened, this, &SceneBinding::_OnOpened);
  connect(&session, &Session::ReadingEnded, this, [this] { m_meanwhile.clear(); });
  connect(&session, &Session::Closed, this, &SceneBinding::_ForgetAll);
  session.GetScene()->RegisterObserver(
      *m_sceneFollower, du::Flags(memkernel::ShapeSceneExistence | memkernel::ShapeSceneVisibility), false);
}

SceneBinding::~SceneBinding()
{
  m_session.GetScene()->UnregisterObserver(*m_sceneFollower);
}

void SceneBinding::Follow(ModelView& view)
{
  connect(&view, &ModelView::Picked, this, &SceneBinding::_OnPicked);
  connect(&view, &ModelView::Hovered, this,
          [this](const du::SmartPtr<memkernel::Instance>& instance) { PointAt(_ChooseRow(instance)); });
}

void SceneBinding::_Add(const std::vector<PlacedShape>& shapes)
{
  for (const PlacedShape& placed : shapes) {
    if (m_drawn.Add(placed)) {
      m_feeder.Ask(placed.instance->GetProduct()->GetShape(), placed.source);
    }
  }
}

void SceneBinding::_OnOpened(const QString& file)
{
  const du::SmartPtr<zelk::Instance> top = m_session.FindFile(file);
  for (const auto& [instances, isVisible] : std::exchange(m_meanwhile, {})) {
    SetVisible(FindWithin(instances, top), isVisible);
  }
  _RefreshHighlights();
}

void SceneBinding::_ForgetAll()
{
  m_feeder.CallOff();
  m_visibility.Clear();
  m_meanwhile.clear();
  PointAt({});
  _RefreshHighlights();
}

// The tree is another one below what is highlighted.
void SceneBinding::_RefreshHighlights()
{
  m_selected.Refresh();
  m_associated.Refresh();
}

du::SmartPtr<memkernel::Instance> SceneBinding::_ChooseRow(const du::SmartPtr<memkernel::Instance>& picked) const
{
  if (m_picksBodies || !picked || !picked->IsBodyInstance()) {
    return picked;
  }
  du::SmartPtr<zelk::BaseInstance> part;
  picked->GetBaseParent(part);
  return du::DynamicCast<memkernel::Instance>(part);
}

void SceneBinding::_OnPicked(const du::SmartPtr<memkernel::Instance>& instance, PickMode mode)
{
  const du::SmartPtr<zelk::Instance> row = _ChooseRow(instance);
  memkernel::SelectionManager& manager = m_session.GetWorld()->GetMemSelectionManager();
  if (mode == PickMode::Replace) {
    manager.ApplyInstances(s_selection, {row}, zelk::SelectionManager::OperationSet);
  } else if (row) {
    manager.ApplyInstances(s_selection, {row}, zelk::SelectionManager::OperationToggle);
  }
}

void SceneBinding::PointAt(const du::SmartPtr<memkernel::Instance>& instance)
{
  m_pointed = instance;
  if (instance) {
    m_pointedDue.start();
  } else {
    m_pointedDue.stop();
    _HighlightPointed();
  }
  Q_EMIT PointedAt(instance ? QString::fromUtf8(instance->GetObjectName().GetView()) : QString());
}

void SceneBinding::_HighlightPointed()
{
  m_session.GetWorld()->GetMemSelectionManager().ApplyInstances(s_associated, {m_pointed},
                                                                zelk::SelectionManager::OperationSet);
}

bool SceneBinding::IsUpToDate() const
{
  return m_visibility.IsEmpty() && !m_pointedDue.isActive() && m_selected.IsUpToDate() && m_associated.IsUpToDate()
         && !m_drawn.IsAtWork();
}

InstanceList SceneBinding::_GetListed(unsigned int list) const
{
  InstanceList listed;
  m_session.GetWorld()->selectionManager->GetSelectedInstances(list, listed, zelk::ExpandRuleInstances);
  return listed;
}

void SceneBinding::SelectNothing()
{
  m_session.GetWorld()->selectionManager->ApplyItems(s_selection, {}, zelk::SelectionManager::OperationSet);
}

bool SceneBinding::SetVisible(const InstanceList& instances, bool isVisible)
{
  if (m_session.IsFilling()) {
    m_meanwhile.emplace_back(instances, isVisible);
  }
  if (!m_visibility.Add(instances, isVisible)) {
    return false;
  }
  m_visibilityDue.start();
  return true;
}

void SceneBinding::_SetSomeVisible()
{
  if (m_visibility.GoOn(QDeadlineTimer(s_portionMs))) {
    m_visibilityDue.stop();
  }
}

void SceneBinding::HideSelected()
{
  SetVisible(_GetListed(s_selection), false);
}

void SceneBinding::ShowSelected()
{
  SetVisible(_GetListed(s_selection), true);
}

void SceneBinding::ShowOnlySelected()
{
  const InstanceList selected = _GetListed(s_selection);
  if (!selected.empty()) {
    SetVisible({m_session.GetRoot()}, false);
    SetVisible(selected, true);
  }
}

void SceneBinding::ShowAll()
{
  SetVisible({m_session.GetRoot()}, true);
}

std::size_t SceneBinding::GetSelectedCount() const
{
  return m_session.GetWorld()->selectionManager->GetSelectedCount(
      s_selection, zelk::SelectionManager::GetInstanceTypes(), zelk::ExpandRuleInstances);
}

}  // namespace viewer
