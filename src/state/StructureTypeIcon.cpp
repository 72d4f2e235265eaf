// Which icon tells an instance of a structure panel apart.

#include "guitree/StructureTreeState.h"
#include "guitree/TypeIcon.h"
#include "zelk/GeometryCompareScene.h"

namespace guitree {
namespace {

using InstancePtr = du::ConstSmartPtr<zelk::Instance>;

struct ShapeFlags {
  bool isFailed = false;
  bool isRejected = false;
};

struct Kind {
  bool isSibling = false;
  bool isBody = false;
  bool isConstruction = false;
  bool isPlain = false;
};

/// Null for a scene of another kind.
const zelk::ShapeScene* AsShapeScene(const du::SmartPtr<zelk::Scene>& scene)
{
  return dynamic_cast<const zelk::ShapeScene*>(scene.Get());
}

/// A shape of the kernel's native format that has not failed there is no failure, whatever its data says.
bool HasFailed(const zelk::ShapeInstance& shapeInstance)
{
  constexpr unsigned short s_geometry = 1;
  du::SmartPtr<zelk::Shape> shape;
  shapeInstance.GetShape(shape);
  const bool isFromTrask = shape && shape->IsFromTrask();
  const bool isFailedFromTrask = shape && shape->IsFailedFromTrask();
  return (!isFromTrask || isFailedFromTrask) && shapeInstance.GetShapeDataStatus(s_geometry) == zelk::ShapeDataFailed;
}

ShapeFlags ReadShapeFlags(const InstancePtr& instance, const zelk::ShapeScene* scene)
{
  du::SmartPtr<zelk::ShapeInstance> shapeInstance;
  if (!scene || !scene->GetShapeInstance(instance, shapeInstance)) {
    return {};
  }
  return {.isFailed = HasFailed(*shapeInstance), .isRejected = shapeInstance->HasRejectedCopyrights()};
}

/// The shape instance of a comparison; null outside of one, and for what takes no part in it.
du::SmartPtr<zelk::ShapeInstance> FindCompared(const InstancePtr& instance, const du::SmartPtr<zelk::Scene>& scene)
{
  du::SmartPtr<zelk::ShapeInstance> shapeInstance;
  if (!scene || !scene->IsATypeOf(zelk::GeometryCompareScene::CLASS_TYPE)) {
    return shapeInstance;
  }
  if (const zelk::ShapeScene* const shapeScene = AsShapeScene(scene)) {
    shapeScene->GetShapeInstance(instance, shapeInstance);
  }
  return shapeInstance && shapeInstance->IsCompared() ? shapeInstance : nullptr;
}

TypeIcon ChooseExpandedProxyIcon(const InstancePtr& instance, const du::SmartPtr<zelk::Scene>& scene)
{
  if (!instance->HasShapeSource()) {
    return IconProxyNoShapeSource;
  }
  const ShapeFlags flags = ReadShapeFlags(instance, AsShapeScene(scene));
  if (flags.isRejected) {
    return IconProxyRejectedCopyrights;
  }
  return flags.isFailed ? IconProxyShapeFailed : IconProxyShape;
}

TypeIcon ChooseIconWithoutShapeSource(const zelk::Instance& instance, const Kind& kind)
{
  const bool isAnyBody = kind.isBody || kind.isConstruction;
  if (instance.HasThumbnailSource()) {
    if (kind.isSibling) {
      return IconCollapsedSiblingThumbnailOnly;
    }
    return isAnyBody ? IconBodyNoShapeSource : IconThumbnailOnly;
  }
  if (kind.isSibling) {
    return IconCollapsedSiblingNoSource;
  }
  if (kind.isPlain) {
    return IconPlain;
  }
  return isAnyBody ? IconBodyNoShapeSource : IconNoSource;
}

/// The icon of a sibling that stands for all, of a body, of a construction body, or of none of these.
TypeIcon ChooseByKind(const Kind& kind, TypeIcon sibling, TypeIcon otherwise)
{
  if (kind.isSibling) {
    return sibling;
  }
  if (kind.isBody) {
    return IconBody;
  }
  return kind.isConstruction ? IconConstructionBody : otherwise;
}

/// Here alone a body comes before a sibling.
TypeIcon ChooseFailedIcon(const Kind& kind)
{
  if (kind.isBody) {
    return IconBodyFailed;
  }
  if (kind.isConstruction) {
    return IconConstructionBodyFailed;
  }
  return kind.isSibling ? IconCollapsedSiblingFailed : IconShapeFailed;
}

TypeIcon ChooseIconWithShapeSource(const InstancePtr& instance, const zelk::ShapeScene* scene, const Kind& kind)
{
  const ShapeFlags flags = ReadShapeFlags(instance, scene);
  // A thumbnail outranks whatever is wrong with the shape.
  if (instance->HasThumbnailSource()) {
    return ChooseByKind(kind, IconCollapsedSiblingThumbnail, IconThumbnail);
  }
  // A rejected body looks like any other rejected instance.
  if (flags.isRejected) {
    return kind.isSibling ? IconCollapsedSiblingRejectedCopyrights : IconRejectedCopyrights;
  }
  return flags.isFailed ? ChooseFailedIcon(kind) : ChooseByKind(kind, IconCollapsedSibling, IconPlain);
}

Kind ReadKind(const zelk::Instance& instance, bool isCollapsing)
{
  Kind kind;
  kind.isSibling = isCollapsing && instance.IsMultiInstancedSibling();
  kind.isBody = instance.IsBodyTypeInstance();
  kind.isConstruction = instance.IsConstructionBodyTypeInstance();
  kind.isPlain = instance.IsPlainIconInstance();
  return kind;
}

}  // namespace

int StructureTreeState::GetUnloadedTypeIcon(const zelk::BaseInstance* instance, const du::SmartPtr<zelk::Scene>& scene)
{
  return GetUnloadedTypeIconStatic(InstancePtr(zelk::AsInstance(instance)), scene);
}

int StructureTreeState::GetUnloadedTypeIconStatic(const du::ConstSmartPtr<zelk::Instance>& instance,
                                                  const du::SmartPtr<zelk::Scene>& scene)
{
  if (!instance) {
    return IconPlain;
  }
  if (const du::SmartPtr<zelk::ShapeInstance> compared = FindCompared(instance, scene)) {
    return compared->IsComparedFirstItem() ? IconComparedFirst : IconComparedOther;
  }
  if (!instance->IsRootContainerRoot()) {
    if (instance->HasProxyExpandFailed()) {
      return IconProxyExpandFailed;
    }
    if (instance->IsProxyExpanded()) {
      return ChooseExpandedProxyIcon(instance, scene);
    }
    if (instance->IsProxy()) {
      return IconProxy;
    }
  }
  const Kind kind = ReadKind(*instance, IsCollapsingInstances());
  if (!instance->HasShapeSource()) {
    return ChooseIconWithoutShapeSource(*instance, kind);
  }
  return ChooseIconWithShapeSource(instance, AsShapeScene(scene), kind);
}

}  // namespace guitree
