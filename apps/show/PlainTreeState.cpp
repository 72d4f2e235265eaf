#include "PlainTreeState.h"

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

}  // namespace

PlainTreeState::PlainTreeState(guitree::GuiTree& tree) : WorldTreeState(tree), m_filter("Plain") {}

int PlainTreeState::GetUnloadedTypeIcon(const zelk::BaseInstance* instance, const du::SmartPtr<zelk::Scene>& scene)
{
  const auto* part = dynamic_cast<const zelk::Instance*>(instance);
  if (!part) {
    return s_iconPlain;
  }
  if (IsAnyProxy(*part)) {
    return GetProxyIcon(*part, scene);
  }
  if (part->HasShapeSource()) {
    return GetShapeIcon(*part, scene);
  }
  return part->HasThumbnailSource() || part->IsPlainIconInstance() ? s_iconPlain : s_iconNoSource;
}

structure_utils::TreeFilterInfoBase& PlainTreeState::GetFilter(const du::SmartPtr<zelk::View>& /*view*/)
{
  return m_filter;
}
