#include "IconRules.h"

#include "guitree/WorldTreeState.h"
#include "zelk/GeometryCompareScene.h"
#include "zelk/ShapeScene.h"

namespace systemtest {
namespace {

struct Shape {
  bool isThere = false;
  bool isRejected = false;
  bool hasFailed = false;
  int comparedIcon = -1;
};

Shape Look(const zelk::Instance& instance, const du::SmartPtr<zelk::Scene>& scene)
{
  Shape shape;
  const auto shapeScene = du::DynamicCast<zelk::ShapeScene>(scene);
  du::SmartPtr<zelk::ShapeInstance> found;
  if (!shapeScene || !shapeScene->GetShapeInstance(du::ConstSmartPtr<zelk::Instance>(&instance), found)) {
    return shape;
  }
  du::SmartPtr<zelk::Shape> data;
  found->GetShape(data);
  const bool isSoundNative = data && data->IsFromTrask() && !data->IsFailedFromTrask();
  shape.isThere = true;
  shape.isRejected = found->HasRejectedCopyrights();
  shape.hasFailed = found->GetShapeDataStatus(1) == zelk::ShapeDataFailed && !isSoundNative;
  if (du::DynamicCast<zelk::GeometryCompareScene>(scene) && found->IsCompared()) {
    shape.comparedIcon = found->IsComparedFirstItem() ? 24 : 26;
  }
  return shape;
}

}  // namespace

int ChooseIcon(const zelk::Instance& instance, const du::SmartPtr<zelk::Scene>& scene)
{
  const Shape shape = Look(instance, scene);
  if (shape.comparedIcon >= 0) {
    return shape.comparedIcon;
  }
  const bool hasSource = instance.HasShapeSource();
  if (!instance.IsRootContainerRoot()) {
    if (instance.HasProxyExpandFailed()) {
      return 16;
    }
    if (instance.IsProxyExpanded()) {
      return !hasSource ? 8 : shape.isRejected ? 12 : shape.hasFailed ? 14 : 10;
    }
    if (instance.IsProxy()) {
      return 6;
    }
  }
  // Columns: a collapsed sibling, a body, a construction body, any other.
  const bool isSibling = guitree::WorldTreeState::IsCollapsingInstances() && instance.IsMultiInstancedSibling();
  const int kind = isSibling                                   ? 0
                   : instance.IsBodyTypeInstance()             ? 1
                   : instance.IsConstructionBodyTypeInstance() ? 2
                                                               : 3;
  if (!hasSource) {
    static constexpr int s_thumbnailOnly[] = {38, 48, 48, 20};
    static constexpr int s_nothing[] = {34, 48, 48, 2};
    const bool isPlain = !isSibling && instance.IsPlainIconInstance();
    return instance.HasThumbnailSource() ? s_thumbnailOnly[kind] : isPlain ? 0 : s_nothing[kind];
  }
  static constexpr int s_thumbnail[] = {36, 44, 46, 18};
  static constexpr int s_plain[] = {32, 44, 46, 0};
  if (instance.HasThumbnailSource()) {
    return s_thumbnail[kind];
  }
  if (shape.isRejected) {
    return isSibling ? 42 : 30;
  }
  if (shape.hasFailed) {
    return instance.IsBodyTypeInstance() ? 50 : instance.IsConstructionBodyTypeInstance() ? 52 : isSibling ? 40 : 28;
  }
  return s_plain[kind];
}

bool HasIssue(const zelk::Instance& instance, const du::SmartPtr<zelk::Scene>& scene)
{
  switch (ChooseIcon(instance, scene)) {
    case 14:
    case 16:
    case 28:
    case 40:
    case 50:
    case 52:
      return true;
    default:
      return false;
  }
}

}  // namespace systemtest
