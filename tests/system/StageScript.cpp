// How the stage finds what an event is about, and how it names it in a script.

#include <algorithm>
#include <cctype>
#include <thread>

#include "Stage.h"

namespace systemtest {
namespace {

struct ProductKind {
  unsigned int flags = 0;
  bool hasShape = false;
  zelk::ShapeDataStatus status = zelk::ShapeDataNone;
  zelk::ShapeDataStatus result = zelk::ShapeDataLoaded;
  bool isNative = false;
  /// How long a load takes on a worker.
  int turns = 1;
};

ProductKind KindOf(const std::string& name)
{
  using memkernel::InstanceFlag;
  static const std::map<std::string, ProductKind> s_kinds{
      {"bolt", {.hasShape = true, .turns = 3000}},
      {"nut", {.hasShape = true, .status = zelk::ShapeDataLoaded}},
      {"plate", {.hasShape = true, .result = zelk::ShapeDataFailed}},
      {"ring", {.hasShape = true, .result = zelk::ShapeDataPartial, .turns = 300}},
      {"gear", {.hasShape = true, .status = zelk::ShapeDataFailed, .result = zelk::ShapeDataFailed}},
      {"cast", {.hasShape = true, .result = zelk::ShapeDataFailed, .isNative = true}},
      {"icon", {.flags = memkernel::InstanceThumbnailSource, .hasShape = true}},
      {"unit", {}},
      {"frame", {.flags = memkernel::InstancePlainIcon}},
      {"file", {.flags = memkernel::InstanceProxy}},
      {"part file", {.flags = memkernel::InstanceProxy, .hasShape = true}},
      {"body", {.flags = InstanceFlag::InstanceBody | InstanceFlag::InstanceBodyType, .hasShape = true}},
      {"sheet",
       {.flags = InstanceFlag::InstanceBody | InstanceFlag::InstanceConstructionBodyType,
        .hasShape = true,
        .result = zelk::ShapeDataFailed}},
      {"note", {.flags = memkernel::Instance3dSymbol, .hasShape = true, .status = zelk::ShapeDataLoaded}},
      {"top", {.flags = memkernel::InstanceRootContainerRoot}},
  };
  return s_kinds.at(name);
}

}  // namespace

std::vector<Stage::InstancePtr> Stage::_ListTree() const
{
  std::vector<InstancePtr> all;
  if (const InstancePtr root = m_kernel.tree->GetRootInstance()) {
    all.push_back(root);
  }
  for (std::size_t i = 0; i < all.size(); ++i) {
    std::vector<BasePtr> children;
    all[i]->GetBaseChildren(children);
    for (const BasePtr& child : children) {
      all.push_back(du::DynamicCast<memkernel::Instance>(child));
    }
  }
  return all;
}

Stage::InstancePtr Stage::_Pick(std::uint32_t number) const
{
  const auto all = _ListTree();
  return all.empty() ? InstancePtr() : all[number % all.size()];
}

Stage::ShapeInstancePtr Stage::_PickShape(const Event& event, Place*& place)
{
  place = &m_places[(event.second >> 3U) % m_places.size()];
  if (m_current > 0 && (event.second >> 16U) % 2 == 0) {
    place = &m_places[m_current - 1];
  }
  if (!place->content || !place->hasScene) {
    return {};
  }
  std::vector<ShapeInstancePtr> all;
  for (const InstancePtr& instance : _ListTree()) {
    if (const ShapeInstancePtr shape = place->content->FindShapeInstance(instance.Get())) {
      all.push_back(shape);
    }
  }
  return all.empty() ? ShapeInstancePtr() : all[event.first % all.size()];
}

std::string Stage::_Quote(const std::string& name)
{
  const bool isPlain = std::all_of(name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) != 0; });
  return isPlain && !name.empty() ? name : '"' + name + '"';
}

// A product may have been renamed since.
std::string Stage::_NameOfNew(const std::string& product)
{
  return _Quote(std::string(_GetProduct(product)->GetName()));
}

std::string Stage::_PathOf(const zelk::BaseInstance& instance) const
{
  std::string step = _Quote(instance.GetObjectName());
  BasePtr parent;
  instance.GetBaseParent(parent);
  if (!parent) {
    return '/' + step;
  }
  std::vector<BasePtr> siblings;
  parent->GetBaseChildren(siblings);
  std::size_t number = 0;
  std::size_t count = 0;
  for (const BasePtr& sibling : siblings) {
    count += sibling->GetObjectName() == instance.GetObjectName() ? 1U : 0U;
    number = sibling == &instance ? count : number;
  }
  step += count > 1 ? '#' + std::to_string(number) : std::string();
  return _PathOf(*parent) + '/' + step;
}

PanelModel::View Stage::_GetNoView() const
{
  PanelModel::View none;
  none.selection = m_kernel.selection;
  return none;
}

PanelModel::View Stage::_GetView() const
{
  if (m_current == 0) {
    return _GetNoView();
  }
  const Place& place = m_places[m_current - 1];
  return {.number = m_current,
          .type = m_current % 2 == 1 ? "odd" : "even",
          .scene = place.scene,
          .selection = place.selection};
}

du::SmartPtr<memkernel::Product> Stage::_GetProduct(const std::string& name)
{
  du::SmartPtr<memkernel::Product>& product = m_products[name];
  if (product) {
    return product;
  }
  const ProductKind kind = KindOf(name);
  du::SmartPtr<memkernel::Shape> shape;
  if (kind.hasShape) {
    const int turns = m_kernel.HasThreads() ? kind.turns : 0;
    shape = du::MakeSmart<memkernel::Shape>(
        [result = kind.result, turns](memkernel::LoadContext& context) {
          for (int turn = 0; turn < turns; ++turn) {
            if (context.IsCanceled()) {
              return zelk::ShapeDataNone;
            }
            std::this_thread::yield();
          }
          return result;
        },
        kind.status);
    shape->SetFromTrask(kind.isNative);
  }
  product = m_kernel.tree->CreateProduct({.name = du::Symbol(name), .flags = kind.flags, .shape = shape});
  return product;
}

void Stage::_Remark(const Event& event, const std::string& text)
{
  _Say("# " + ToText(event) + (text.empty() ? "" : ": " + text));
}

}  // namespace systemtest
