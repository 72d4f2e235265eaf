#include "PlainTreeState.h"

#include "guitree/GuiTree.h"
#include "zelk/Instance.h"
#include "zelk/ShapeScene.h"

namespace {

constexpr int s_iconPlain = 0;
constexpr int s_iconNoSource = 2;
constexpr int s_iconProxy = 6;
constexpr int s_iconProxyNoShapeSource = 8;
constexpr int s_iconProxyShape = 10;
constexpr int s_iconProxyShapeFailed = 14;
constexpr int s_iconProxyExpandFailed = 16;
constexpr int s_iconShapeFailed = 28;
constexpr int s_iconBody = 44;
constexpr int s_iconBodyFailed = 50;

constexpr unsigned short s_shapeData = 1;

bool HasShapeFailed(const zelk::Instance& instance, const du::SmartPtr<zelk::Scene>& scene)
{
  const auto shapes = du::DynamicCast<zelk::ShapeScene>(scene);
  du::SmartPtr<zelk::ShapeInstance> shape;
  return shapes && shapes->GetShapeInstance(du::ConstSmartPtr<zelk::Instance>(&instance), shape)
         && shape->GetShapeDataStatus(s_shapeData) == zelk::ShapeDataFailed;
}

bool IsAnyProxy(const zelk::Instance& instance)
{
  return !instance.IsRootContainerRoot()
         && (instance.HasProxyExpandFailed() || instance.IsProxyExpanded() || instance.IsProxy());
}

int GetProxyIcon(const zelk::Instance& instance, const du::SmartPtr<zelk::Scene>& scene)
{
  if (instance.HasProxyExpandFailed()) {
    return s_iconProxyExpandFailed;
  }
  if (!instance.IsProxyExpanded()) {
    return s_iconProxy;
  }
  if (!instance.HasShapeSource()) {
    return s_iconProxyNoShapeSource;
  }
  return HasShapeFailed(instance, scene) ? s_iconProxyShapeFailed : s_iconProxyShape;
}

int GetShapeIcon(const zelk::Instance& instance, const du::SmartPtr<zelk::Scene>& scene)
{
  if (HasShapeFailed(instance, scene)) {
    return instance.IsBodyTypeInstance() ? s_iconBodyFailed : s_iconShapeFailed;
  }
  return instance.IsBodyTypeInstance() ? s_iconBody : s_iconPlain;
}

int GetIcon(const zelk::Instance& instance, const du::SmartPtr<zelk::Scene>& scene)
{
  if (IsAnyProxy(instance)) {
    return GetProxyIcon(instance, scene);
  }
  if (instance.HasShapeSource()) {
    return GetShapeIcon(instance, scene);
  }
  return instance.HasThumbnailSource() || instance.IsPlainIconInstance() ? s_iconPlain : s_iconNoSource;
}

}  // namespace

PlainTreeState::PlainTreeState(guitree::GuiTree& tree) : WorldTreeState(tree), m_filter("Plain") {}

// A filter that is still at work must not ask any more.
PlainTreeState::~PlainTreeState()
{
  if (m_additionalInfo) {
    m_additionalInfo->DetachStatusLookup();
  }
}

int PlainTreeState::GetUnloadedTypeIcon(const zelk::BaseInstance* instance, const du::SmartPtr<zelk::Scene>& scene)
{
  const auto* part = dynamic_cast<const zelk::Instance*>(instance);
  return part ? GetIcon(*part, scene) : s_iconPlain;
}

structure_utils::TreeFilterInfoBase& PlainTreeState::GetFilter(const du::SmartPtr<zelk::View>& /*view*/)
{
  return m_filter;
}

du::SmartPtr<du::RefCounted> PlainTreeState::GetAdditionalFilterInfo() const
{
  const du::SmartPtr<zelk::ShapeScene> scene = _HasGuiTree() ? GetGuiTree().GetCurShapeScene() : nullptr;
  if (m_additionalInfo && m_additionalInfo->GetScene() == scene) {
    return m_additionalInfo;
  }
  // Filters of another scene have been overtaken by the one that asks now.
  if (m_additionalInfo) {
    m_additionalInfo->DetachStatusLookup();
  }
  m_additionalInfo =
      du::MakeSmart<AdditionalInfo>(scene, du::SmartPtr<structure_utils::TreeResultsList>(), &m_statusLookup);
  return m_additionalInfo;
}

PlainTreeState::StatusLookup::TFStatus PlainTreeState::StatusLookup::TreeFilterGetItemStatus(
    const du::ConstSmartPtr<zelk::Instance>& instance, const du::SmartPtr<zelk::Scene>& scene)
{
  switch (GetIcon(*instance, scene)) {
    case s_iconShapeFailed:
      return TFStatusShapeFailed;
    case s_iconBodyFailed:
      return TFStatusBodyFailed;
    case s_iconProxyShapeFailed:
      return TFStatusProxyShapeFailed;
    case s_iconProxyExpandFailed:
      return TFStatusProxyExpandFailed;
    default:
      return TFStatusNone;
  }
}
