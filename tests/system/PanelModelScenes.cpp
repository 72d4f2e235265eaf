// What the model does with what scenes and loads tell.

#include <algorithm>
#include <utility>

#include "PanelModel.h"

namespace systemtest {
namespace {

constexpr unsigned short s_geometry = 1;

du::SmartPtr<zelk::Instance> InstanceOf(const zelk::ShapeInstance& shapeInstance)
{
  du::SmartPtr<zelk::Instance> instance;
  shapeInstance.GetInstance(instance);
  return instance;
}

bool IsSoundNative(const zelk::ShapeInstance& shapeInstance)
{
  du::SmartPtr<zelk::Shape> shape;
  shapeInstance.GetShape(shape);
  return shape && shape->IsFromTrask() && !shape->IsFailedFromTrask();
}

}  // namespace

void PanelModel::OnShapeCreate(const du::SmartPtr<zelk::Scene>& scene, const ShapePtr& shapeInstance)
{
  LogModel* const log = _GetLog(scene);
  const auto instance = InstanceOf(*shapeInstance);
  if (!log || !instance) {
    return;
  }
  switch (shapeInstance->GetShapeDataStatus(s_geometry)) {
    case zelk::ShapeDataLoaded:
      log->SetLoaded(instance.Get(), true, _GetShownScene());
      log->Report(*shapeInstance, shapeInstance->IsVisible());
      return;
    case zelk::ShapeDataFailed:
      if (!IsSoundNative(*shapeInstance)) {
        log->MarkIcon(instance.Get(), _GetShownScene());
        m_fullRepaint.insert(scene.Get());
      }
      return;
    default:
      break;
  }
  du::SmartPtr<zelk::Shape> shape;
  shapeInstance->GetShape(shape);
  if (shape) {
    m_pending.push_back(shapeInstance);
    m_request(*shape, [this, shapeInstance, scene] { _EndLoad(shapeInstance, scene); });
  }
}

void PanelModel::OnShapeRemove(const du::SmartPtr<zelk::Scene>& scene, const ShapePtr& shapeInstance)
{
  if (LogModel* const log = _GetLog(scene)) {
    log->SetLoaded(InstanceOf(*shapeInstance).Get(), false, _GetShownScene());
    log->Report(*shapeInstance, false);
  }
}

void PanelModel::OnShapeVisibility(const du::SmartPtr<zelk::Scene>& scene, const ShapePtr& shapeInstance, bool visible)
{
  if (LogModel* const log = _GetLog(scene)) {
    log->Report(*shapeInstance, visible && shapeInstance->GetShapeDataStatus(s_geometry) == zelk::ShapeDataLoaded);
  }
}

void PanelModel::OnCompared(const du::SmartPtr<zelk::Scene>& scene, const ShapePtr& shapeInstance)
{
  if (LogModel* const log = _GetLog(scene)) {
    log->SetCompared(InstanceOf(*shapeInstance).Get(), _GetShownScene());
  }
}

void PanelModel::OnApplyTreeUpdate()
{
  if (_Filter().IsOn()) {
    Populate();
  }
}

void PanelModel::OnSceneEndUpdate(const du::SmartPtr<zelk::Scene>& scene)
{
  const bool repaintsAll = m_fullRepaint.erase(scene.Get()) > 0;
  LogModel* const log = _GetLog(scene);
  if (!log || log != _GetCurrentLog()) {
    return;
  }
  if (repaintsAll) {
    _PaintAll(*log);
  } else if (log->HasChanges()) {
    _PaintChanges(*log);
  }
  log->ClearChanges();
}

void PanelModel::_CheckVisible(const BasePtr& instance)
{
  if (instance) {
    for (auto& [scene, log] : m_logs) {
      log.CheckVisible(*instance);
    }
  }
}

void PanelModel::_MarkIcon(const BasePtr& instance)
{
  for (auto& [scene, log] : m_logs) {
    log.MarkIcon(instance.Get(), _GetShownScene());
  }
}

void PanelModel::_PaintAll(LogModel& log)
{
  m_rows.ForEach([&](Rows::Row& row) {
    row.state = log.GetState(row.instance.Get());
    row.icon = log.FindIcon(row.instance.Get(), _GetShownScene());
  });
}

void PanelModel::_PaintChanges(const LogModel& log)
{
  for (const auto& [instance, word] : log.GetVisible().GetChanges()) {
    if (Rows::Row* const row = m_rows.Find(instance)) {
      row->state = word / 16;
    }
  }
  for (const auto& [instance, icon] : log.GetIconChanges()) {
    if (Rows::Row* const row = m_rows.Find(instance)) {
      row->icon = icon;
    }
  }
}

void PanelModel::_EndLoad(const ShapePtr& shapeInstance, const du::SmartPtr<zelk::Scene>& scene)
{
  m_finished.emplace_back(shapeInstance, scene);
  std::erase(m_pending, shapeInstance);
  if (!m_pending.empty()) {
    return;
  }
  bool hasChanged = false;
  for (const auto& [finished, itsScene] : std::exchange(m_finished, {})) {
    LogModel* const log = _GetLog(itsScene);
    if (log && InstanceOf(*finished) && _RecordLoad(*log, *finished)) {
      hasChanged |= log == _GetCurrentLog();
    }
  }
  if (hasChanged) {
    _PaintChanges(*_GetCurrentLog());
    _GetCurrentLog()->ClearChanges();
  }
}

bool PanelModel::_RecordLoad(LogModel& log, const zelk::ShapeInstance& shapeInstance)
{
  const auto instance = InstanceOf(shapeInstance);
  switch (shapeInstance.GetShapeDataStatus(s_geometry)) {
    case zelk::ShapeDataPartial:
    case zelk::ShapeDataLoaded:
      log.SetLoaded(instance.Get(), true, _GetShownScene());
      log.Report(shapeInstance, shapeInstance.IsVisible());
      return true;
    case zelk::ShapeDataFailed:
      if (!IsSoundNative(shapeInstance)) {
        log.MarkIcon(instance.Get(), _GetShownScene());
        return true;
      }
      return false;
    default:
      return false;
  }
}

}  // namespace systemtest
