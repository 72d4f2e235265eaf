#include "ModelScene.h"

#include <Bnd_Box.hxx>
#include <Graphic3d_NameOfMaterial.hxx>
#include <Prs3d_Drawer.hxx>
#include <Prs3d_LineAspect.hxx>
#include <Quantity_Color.hxx>
#include <SelectMgr_SelectionManager.hxx>

#include <QDeadlineTimer>
#include <stdexcept>
#include <utility>

#include "GraphicDriver.h"

namespace viewer {

namespace {

/// As long as nobody notices that the window does not answer.
constexpr int s_portionMs = 10;

Quantity_Color ToColor(const dg::Color& color)
{
  return {color.red, color.green, color.blue, Quantity_TOC_sRGB};
}

Quantity_Color ChooseColor(const std::string& hex)
{
  Quantity_Color color;
  if (hex.empty() || !Quantity_Color::ColorFromHex(hex.c_str(), color)) {
    return {0.66, 0.70, 0.75, Quantity_TOC_sRGB};
  }
  return color;
}

Handle(Prs3d_Drawer) MakeStyle()
{
  Handle(Prs3d_Drawer) style = new Prs3d_Drawer();
  style->SetMethod(Aspect_TOHM_COLOR);
  style->SetDisplayMode(AIS_Shaded);
  return style;
}

/// What all instances of a shape are connected to. Never displayed itself.
Handle(AIS_Shape) MakePrototype(const TopoDS_Shape& drawable, const ShapeSource& source)
{
  Handle(AIS_Shape) prototype = new AIS_Shape(drawable);
  prototype->Attributes()->SetAutoTriangulation(false);
  prototype->SetMaterial(Graphic3d_MaterialAspect(Graphic3d_NameOfMaterial_Plastified));
  prototype->SetColor(ChooseColor(source.color));
  prototype->Attributes()->SetFaceBoundaryDraw(true);
  prototype->Attributes()->SetFaceBoundaryAspect(
      new Prs3d_LineAspect(Quantity_Color(0.12, 0.14, 0.16, Quantity_TOC_sRGB), Aspect_TOL_SOLID, 1.0));
  return prototype;
}

const memkernel::Shape* GetShape(const PlacedShape& placed)
{
  return placed.instance->GetProduct()->GetShape().Get();
}

}  // namespace

ModelScene::ModelScene()
    : m_viewer(new V3d_Viewer(MakeGraphicDriver())),
      m_context(new AIS_InteractiveContext(m_viewer)),
      m_selectedStyle(MakeStyle()),
      m_associatedStyle(MakeStyle())
{
  m_viewer->SetDefaultLights();
  m_viewer->SetLightOn();
  m_viewer->SetDefaultTypeOfView(V3d_ORTHOGRAPHIC);
  _SetUpContext();
  m_timer.setInterval(0);
  connect(&m_timer, &QTimer::timeout, this, &ModelScene::_WorkSome);
}

ModelScene::~ModelScene()
{
  m_context->RemoveAll(false);
  for (auto& [instance, item] : m_items) {
    if (!item.presentation.IsNull()) {
      item.presentation->Disconnect();
    }
  }
}

void ModelScene::_SetUpContext()
{
  m_context->SetDisplayMode(AIS_Shaded, false);
  m_context->DefaultDrawer()->SetAutoTriangulation(false);
  m_context->HighlightStyle(Prs3d_TypeOfHighlight_Dynamic)->SetDisplayMode(AIS_Shaded);
  SetColors(dg::Color(1.0F, 0.65F, 0.0F, 1.0F), dg::Color(0.2F, 0.7F, 1.0F, 1.0F), dg::Color(1.0F, 1.0F, 0.0F, 1.0F));
}

void ModelScene::SetColors(const dg::Color& selected, const dg::Color& associated, const dg::Color& hovered)
{
  m_selectedStyle->SetColor(ToColor(selected));
  m_associatedStyle->SetColor(ToColor(associated));
  m_context->HighlightStyle(Prs3d_TypeOfHighlight_Dynamic)->SetColor(ToColor(hovered));
  for (const InstanceSet* const highlighted : {&m_selected, &m_associated}) {
    for (const zelk::BaseInstance* const instance : *highlighted) {
      if (Item* const item = _Find(*instance)) {
        item->look = Look::Plain;
        _Highlight(*item);
      }
    }
  }
  Q_EMIT Changed();
}

bool ModelScene::Add(const PlacedShape& placed)
{
  const zelk::BaseInstance* const instance = placed.instance.Get();
  const memkernel::Shape* const shape = GetShape(placed);
  if (shape == nullptr || !m_items.try_emplace(instance, Item{placed, {}}).second) {
    return false;
  }
  Item& item = m_items.at(instance);
  item.isSelected = m_selected.contains(instance);
  item.isAssociated = m_associated.contains(instance);
  ShapeEntry& entry = m_shapes[shape];
  entry.users.insert(instance);
  if (!entry.prototype.IsNull()) {
    _MakePending(*instance);
  }
  return entry.users.size() == 1;
}

bool ModelScene::Remove(const zelk::BaseInstance& instance)
{
  Item* const item = _Find(instance);
  if (item == nullptr) {
    return false;
  }
  if (!item->presentation.IsNull()) {
    m_shownCount -= item->isVisible ? 1U : 0U;
    m_owners.erase(item->presentation.get());
    m_context->Remove(item->presentation, false);
    item->presentation->Disconnect();
  }
  const auto entry = m_shapes.find(GetShape(item->placed));
  entry->second.users.erase(&instance);
  const bool isLast = entry->second.users.empty();
  if (isLast) {
    m_shapes.erase(entry);
  }
  m_selected.erase(&instance);
  m_associated.erase(&instance);
  m_items.erase(&instance);
  Q_EMIT ContentChanged();
  return isLast;
}

void ModelScene::SetVisible(const zelk::BaseInstance& instance, bool isVisible)
{
  Item* const item = _Find(instance);
  if (item == nullptr || item->isVisible == isVisible) {
    return;
  }
  item->isVisible = isVisible;
  if (item->presentation.IsNull()) {
    return;
  }
  if (isVisible) {
    _Display(*item);
  } else {
    _Erase(*item);
  }
  Q_EMIT ContentChanged();
}

void ModelScene::PutShape(const memkernel::Shape& shape, const TopoDS_Shape& drawable)
{
  const auto entry = m_shapes.find(&shape);
  if (entry == m_shapes.end() || drawable.IsNull() || !entry->second.prototype.IsNull()) {
    return;
  }
  const Item* const first = _Find(**entry->second.users.begin());
  entry->second.prototype = MakePrototype(drawable, *first->placed.source);
  for (const zelk::BaseInstance* const user : entry->second.users) {
    _MakePending(*user);
  }
}

void ModelScene::_MakePending(const zelk::BaseInstance& instance)
{
  m_pending.push_back(&instance);
  m_timer.start();
}

// What the user has just asked for comes before what is still to come.
void ModelScene::_WorkSome()
{
  const QDeadlineTimer end(s_portionMs);
  const bool isMaking = m_unlit.empty();
  while (!m_unlit.empty() && !end.hasExpired()) {
    _HighlightFirst();
  }
  while (isMaking && !m_pending.empty() && !end.hasExpired()) {
    _MakeFirst();
  }
  if (!IsAtWork()) {
    m_timer.stop();
  }
  if (isMaking) {
    Q_EMIT ContentChanged();
  } else {
    Q_EMIT Changed();
  }
}

// What waits may have gone meanwhile, and another one have come in its place, which waits for itself.
void ModelScene::_MakeFirst()
{
  Item* const item = _Find(*m_pending.front());
  m_pending.pop_front();
  if (item != nullptr && item->presentation.IsNull()) {
    _Make(*item);
  }
}

void ModelScene::_HighlightFirst()
{
  Item* const item = _Find(*m_unlit.front());
  m_unlit.pop_front();
  if (item != nullptr) {
    _Highlight(*item);
  }
}

void ModelScene::_Make(Item& item)
{
  const Handle(AIS_Shape)& prototype = m_shapes.at(GetShape(item.placed)).prototype;
  if (prototype.IsNull()) {
    return;
  }
  item.presentation = new AIS_ConnectedInteractive();
  item.presentation->Connect(prototype, item.placed.place);
  m_owners.emplace(item.presentation.get(), item.placed.instance.Get());
  if (item.isVisible) {
    _Display(item);
  }
}

void ModelScene::_Display(Item& item)
{
  m_context->Display(item.presentation, AIS_Shaded, 0, false);
  ++m_shownCount;
  _Highlight(item);
}

void ModelScene::_Erase(Item& item)
{
  m_context->Unhilight(item.presentation, false);
  item.look = Look::Plain;
  m_context->Erase(item.presentation, false);
  --m_shownCount;
}

void ModelScene::_Highlight(Item& item)
{
  const Look look = item.isSelected ? Look::Selected : item.isAssociated ? Look::Associated : Look::Plain;
  if (item.presentation.IsNull() || !item.isVisible || item.look == look) {
    return;
  }
  item.look = look;
  if (look == Look::Plain) {
    m_context->Unhilight(item.presentation, false);
  } else {
    m_context->HilightWithColor(item.presentation, item.isSelected ? m_selectedStyle : m_associatedStyle, false);
  }
}

template <bool ModelScene::Item::*Flag>
void ModelScene::_SetFlag(InstanceSet& present, InstanceSet wanted)
{
  const auto set = [this](const InstanceSet& instances, const InstanceSet& others, bool isOn) {
    for (const zelk::BaseInstance* const instance : instances) {
      Item* const item = others.contains(instance) ? nullptr : _Find(*instance);
      if (item != nullptr) {
        item->*Flag = isOn;
        m_unlit.push_back(instance);
      }
    }
  };
  set(present, wanted, false);
  set(wanted, present, true);
  present = std::move(wanted);
  if (!m_unlit.empty()) {
    m_timer.start();
  }
}

void ModelScene::SetSelected(InstanceSet instances)
{
  _SetFlag<&Item::isSelected>(m_selected, std::move(instances));
}

void ModelScene::SetAssociated(InstanceSet instances)
{
  _SetFlag<&Item::isAssociated>(m_associated, std::move(instances));
}

du::SmartPtr<memkernel::Instance> ModelScene::FindInstance(const AIS_InteractiveObject* presentation) const
{
  const auto owner = m_owners.find(presentation);
  return owner == m_owners.end() ? nullptr : m_items.at(owner->second).placed.instance;
}

bool ModelScene::IsShown(const zelk::BaseInstance& instance) const
{
  const Item* const item = _Find(instance);
  return item != nullptr && item->isVisible && !item->presentation.IsNull();
}

bool ModelScene::IsSelected(const zelk::BaseInstance& instance) const
{
  const Item* const item = _Find(instance);
  return item != nullptr && item->isSelected;
}

bool ModelScene::FindCenter(const zelk::BaseInstance& instance, gp_Pnt& center) const
{
  const Item* const item = _Find(instance);
  if (item == nullptr || item->presentation.IsNull()) {
    return false;
  }
  const Bnd_Box box = m_shapes.at(GetShape(item->placed)).prototype->BoundingBox().Transformed(item->placed.place);
  if (box.IsVoid()) {
    return false;
  }
  center = gp_Pnt((box.CornerMin().XYZ() + box.CornerMax().XYZ()) / 2);
  return true;
}

ModelScene::Item* ModelScene::_Find(const zelk::BaseInstance& instance)
{
  const auto found = m_items.find(&instance);
  return found == m_items.end() ? nullptr : &found->second;
}

const ModelScene::Item* ModelScene::_Find(const zelk::BaseInstance& instance) const
{
  const auto found = m_items.find(&instance);
  return found == m_items.end() ? nullptr : &found->second;
}

}  // namespace viewer
