// How events of scenes, views, shapes and selections are played.

#include <algorithm>
#include <utility>

#include "Choose.h"
#include "Stage.h"
#include "zelk/ObjectSelectionItem.h"

namespace systemtest {
namespace {

constexpr std::size_t s_mostScenes = 4;

}  // namespace

void Stage::_PlayScene(const Event& event)
{
  using enum EventKind;
  switch (event.kind) {
    case AddScene:
      return _AddScene(event.first % 5, event.second % 3 == 0);
    case RemoveScene:
      return _RemoveScene(event);
    case ActivateView:
      return _ActivateView(1 + event.first % m_places.size());
    case NoView:
      return _ActivateView(0);
    case RemoveView: {
      Place& place = Choose(m_places, event.first);
      const auto number = static_cast<std::size_t>(&place - m_places.data()) + 1;
      if (place.hasView && event.second % 3 == 0) {
        if (number == m_current) {
          _ActivateView(0);
          m_script.pop_back();
        } else {
          m_host.reports->OnViewRemoved(place.view);
        }
        place.hasView = false;
        _Say("view remove " + std::to_string(number));
      }
      return;
    }
    case CreateShape:
      return _CreateShape(event);
    case Select:
    case Deselect:
    case DeselectAll:
      return _ChangeSelection(event, zelk::SelectionManager::SelectionList);
    case Highlight:
    case Unhighlight:
    case UnhighlightAll:
      return _ChangeSelection(event, zelk::SelectionManager::AssocHlightList);
    case EndLoad:
      if (m_kernel.loader->GetCount() > 0) {
        _Remark(event);
        m_kernel.loader->End(event.first % m_kernel.loader->GetCount());
      }
      return;
    default:
      return _ChangeShape(event);
  }
}

void Stage::_AddScene(unsigned int kind, bool sharesSelection)
{
  const auto live = std::count_if(m_places.begin(), m_places.end(), [](const Place& place) { return place.hasScene; });
  if (static_cast<std::size_t>(live) >= s_mostScenes || m_places.size() > 20) {
    return;
  }
  Place place;
  place.selection = sharesSelection ? m_kernel.selection : du::MakeSmart<memkernel::SelectionManager>(m_kernel.tree);
  if (kind == 4) {
    const auto scene = du::MakeSmart<memkernel::SchematicScene>(place.selection);
    place.scene = scene;
    place.view = du::MakeSmart<memkernel::View>(place.scene);
  } else if (kind >= 2) {
    const auto scene = du::MakeSmart<memkernel::GeometryCompareScene>(place.selection, m_kernel.tree);
    place.scene = scene;
    place.content = scene;
    place.view = du::MakeSmart<memkernel::ClashReportView>(place.scene);
  } else {
    const auto scene = du::MakeSmart<memkernel::ShapeScene>(place.selection, m_kernel.tree);
    place.scene = scene;
    place.content = scene;
    place.view = du::MakeSmart<memkernel::ShapeView>(place.scene);
  }
  const std::string number = std::to_string(m_places.size() + 1);
  _Say(kind == 4 ? "scene add  # of drawings" : kind >= 2 ? "scene add  # of a comparison" : "scene add");
  _Say("view type " + number + (m_places.size() % 2 == 0 ? " odd" : " even"));
  for (const InstancePtr& instance : _ListTree()) {
    if (place.content && instance->HasShapeSource()) {
      place.content->CreateShapeInstance(instance);
    }
  }
  m_host.reports->OnSceneAdded(place.scene);
  m_places.push_back(place);
  if (!m_kernel.HasThreads()) {
    _ListenTo(m_places.back());
  }
}

void Stage::_RemoveScene(const Event& event)
{
  Place& place = Choose(m_places, event.first);
  if (!place.hasScene || event.second % 2 == 0) {
    return;
  }
  _Say("scene remove " + std::to_string(static_cast<std::size_t>(&place - m_places.data()) + 1));
  place.hasScene = false;
  _StopListeningTo(place);
  m_host.reports->OnSceneRemoved(place.scene);
  m_model->RemoveScene(place.scene);
}

// A filter that is at work must be over before the rows of everything come: the host sees to that.
void Stage::_ActivateView(std::size_t number)
{
  if (number > 0 && !m_places[number - 1].hasView) {
    return;
  }
  _Say(number > 0 ? "view " + std::to_string(number) : "view none");
  const std::size_t former = std::exchange(m_current, number);
  const PanelModel::View view = _GetView();
  if (!m_model->GetFilterOf(view.type).IsOn()) {
    _DrainJobs();
  }
  m_current = former;
  _UnbindSelection();
  m_current = number;
  m_host.reports->OnActiveViewChanged(number > 0 ? m_places[number - 1].view : nullptr);
  m_model->ChangeView(view);
  _BindSelection();
}

void Stage::_CreateShape(const Event& event)
{
  Place& place = Choose(m_places, event.second);
  const InstancePtr instance = _Pick(event.first);
  if (!place.hasScene || !place.content || !instance || !instance->HasShapeSource()) {
    return;
  }
  const bool isVisible = (event.second >> 4U) % 3 != 0;
  const bool isThumbnail = (event.second >> 8U) % 2 == 0;
  place.content->RemoveShapeInstance(instance);
  if (place.content->CreateShapeInstance(instance, {.isVisible = isVisible, .isThumbnail = isThumbnail})) {
    _Remark(event, "another shape instance of " + _PathOf(*instance));
  }
}

void Stage::_ChangeShape(const Event& event)
{
  Place* place = nullptr;
  const ShapeInstancePtr shape = _PickShape(event, place);
  if (!shape) {
    return;
  }
  du::SmartPtr<zelk::Instance> instance;
  shape->GetInstance(instance);
  const std::string path = _PathOf(*instance);
  const std::string scene = "in " + std::to_string(place - m_places.data() + 1) + ' ';
  memkernel::ShapeSceneContent& content = *place->content;
  using enum EventKind;
  switch (event.kind) {
    case RemoveShape:
      _Remark(event, "the shape instance of " + path + " goes");
      content.RemoveShapeInstance(instance);
      return;
    case Hide:
    case Show:
      _Say(scene + (event.kind == Hide ? "hide " : "show ") + path + "  # alone");
      content.SetVisible(shape, event.kind == Show);
      return;
    case Thumbnail:
      _Remark(event, scene + "a thumbnail of " + path);
      content.SetThumbnail(shape, !shape->IsThumbnail());
      return;
    case Reject:
      _Remark(event, scene + "copyrights of " + path);
      content.SetRejectedCopyrights(shape, !shape->HasRejectedCopyrights());
      return;
    case SetStatus:
      _Remark(event, scene + "the status of " + path + " is " + std::to_string(event.second % 4));
      content.SetShapeDataStatus(shape, static_cast<zelk::ShapeDataStatus>(event.second % 4));
      return;
    default:
      _Remark(event, scene + "a comparison of " + path);
      content.SetCompared(shape, event.second % 3 != 0, event.second % 2 == 0);
      return;
  }
}

void Stage::_ChangeSelection(const Event& event, unsigned int list)
{
  using enum EventKind;
  const auto manager = m_bound ? m_bound : m_current == 0 ? m_kernel.selection : m_places[m_current - 1].selection;
  const bool isSelection = list == zelk::SelectionManager::SelectionList;
  const bool isOn = event.kind == Select || event.kind == Highlight;
  const bool isForScript = m_current == 0 || m_places[m_current - 1].hasScene;
  const std::string verb =
      (isForScript ? "" : "# ")
      + std::string(isSelection ? (isOn ? "select" : "deselect") : (isOn ? "highlight" : "unhighlight"));
  if (event.kind == DeselectAll || event.kind == UnhighlightAll) {
    _Say(verb);
    manager->ApplyItems(list, {}, zelk::SelectionManager::OperationSet);
    return;
  }
  zelk::SelectionManager::ItemSet items;
  std::string line = verb;
  for (const std::uint32_t number : {event.first, event.second}) {
    if (const InstancePtr instance = _Pick(number)) {
      items.insert(du::MakeSmart<zelk::ObjectSelectionItem>(instance));
      line += ' ' + _PathOf(*instance);
    }
  }
  if (!items.empty()) {
    _Say(line);
    manager->ApplyItems(list, items,
                        isOn ? zelk::SelectionManager::OperationAdd : zelk::SelectionManager::OperationRemove);
  }
}

}  // namespace systemtest
