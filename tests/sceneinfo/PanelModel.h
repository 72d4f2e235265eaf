#pragma once

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "WalkingModel.h"
#include "zelk/ShapeSceneObserver.h"
#include "zelk/TreeObserver.h"

namespace sceneinfotest {

/// What the log of one scene must say, worked out beside the panel: it hears the same events of the scene and of the
/// tree and keeps plain maps. To be registered right behind the panel, so that both hear everything in the same order.
class PanelModel {
public:
  using Instance = du::SmartPtr<zelk::Instance>;
  using Held = du::ConstSmartPtr<zelk::ShapeInstance>;

  [[nodiscard]] const WalkingModel& GetLog() const { return m_log; }
  /// The changes have been delivered.
  void ClearChanges() { m_log.ClearChanges(); }

  /// The visible map as it must be on a tree that stays: from what each instance last said of itself, from the leaves
  /// up.
  [[nodiscard]] WalkingModel::States WorkOutFromScratch(const zelk::BaseInstance& root) const
  {
    WalkingModel::States states;
    _WorkOut(root, states);
    return states;
  }

  void OnCreate(const zelk::ShapeInstance& shapeInstance, bool thumbnailsAreFlat)
  {
    const auto status = shapeInstance.GetShapeDataStatus(1);
    if (status == zelk::ShapeDataLoaded) {
      _Report(shapeInstance, shapeInstance.IsVisible());
    } else if (status != zelk::ShapeDataFailed) {
      m_pending.emplace_back(&shapeInstance);
      if (shapeInstance.IsThumbnail() && thumbnailsAreFlat) {
        m_ended.emplace_back(&shapeInstance);
      }
    }
  }
  void OnRemove(const zelk::ShapeInstance& shapeInstance) { _Report(shapeInstance, false); }
  void OnVisibility(const zelk::ShapeInstance& shapeInstance, bool visible)
  {
    _Report(shapeInstance, visible && shapeInstance.GetShapeDataStatus(1) == zelk::ShapeDataLoaded);
  }
  /// The loader is done with a shape, which is that of one shape instance; nothing is recorded before the loop has run.
  void OnLoadEnded(const zelk::Shape& loaded)
  {
    for (const Held& pending : m_pending) {
      du::SmartPtr<zelk::Shape> shape;
      pending->GetShape(shape);
      if (shape == &loaded) {
        m_ended.push_back(pending);
      }
    }
  }
  /// Before the loop runs.
  void OnLoop()
  {
    for (const Held& ended : std::exchange(m_ended, {})) {
      m_finished.push_back(ended);
      m_pending.erase(std::remove(m_pending.begin(), m_pending.end(), ended), m_pending.end());
      if (!m_pending.empty()) {
        continue;
      }
      for (const Held& finished : std::exchange(m_finished, {})) {
        const auto status = finished->GetShapeDataStatus(1);
        if (status == zelk::ShapeDataLoaded || status == zelk::ShapeDataPartial) {
          _Report(*finished, finished->IsVisible());
        }
      }
    }
  }

  void OnTreeCreate(const zelk::BaseInstance& instance, const zelk::BaseInstance& parent)
  {
    m_log.Remove(&instance);
    m_repopulates = m_repopulates || ++m_edits > 200;
    if (!m_repopulates) {
      _Check(parent);
    }
  }
  void OnTreeRemove(const zelk::BaseInstance* parent)
  {
    const bool repopulated = std::exchange(m_repopulates, true);
    if (!repopulated && parent && ++m_edits <= 200) {
      _Check(*parent);
    }
  }
  void OnTreeExpanded(const zelk::BaseInstance& instance)
  {
    if (!m_repopulates) {
      _Check(instance);
    }
  }
  void OnTreeCollapsed(const zelk::BaseInstance& instance) { m_log.SetVisible(&instance, 2); }
  void OnTreeName() { m_repopulates = m_repopulates || ++m_edits > 200; }
  void OnTreeEnd()
  {
    m_repopulates = false;
    m_edits = 0;
  }

private:
  void _Report(const zelk::ShapeInstance& shapeInstance, bool isShown)
  {
    Instance instance;
    shapeInstance.GetInstance(instance);
    if (!instance) {
      return;
    }
    guitree::ECompVisible plain = guitree::CompHidden;
    if (isShown) {
      plain = shapeInstance.IsThumbnail() ? guitree::CompThumbnailVisible : guitree::CompVisible;
    }
    m_plain[instance.Get()] = plain;
    m_log.SetVisible(instance.Get(), plain, true);
  }
  void _Check(const zelk::BaseInstance& instance)
  {
    const auto known = m_log.GetStates().find(&instance);
    const int state = known == m_log.GetStates().end() ? 2 : known->second;
    const int plain = state == 7 ? 3 : state == 8 ? 2 : state % 2;
    m_log.SetVisible(&instance, static_cast<guitree::ECompVisible>(plain), true);
  }

  int _WorkOut(const zelk::BaseInstance& instance, WalkingModel::States& states) const
  {
    int shown = 0;
    int hidden = 0;
    int mixed = 0;
    std::vector<du::SmartPtr<zelk::BaseInstance>> children;
    instance.GetBaseChildren(children);
    for (const auto& child : children) {
      const int state = _WorkOut(*child, states);
      if (dynamic_cast<const zelk::Instance&>(*child).Is3dSymbol()) {
        continue;
      }
      ++(state == 2 ? hidden : state == 3 || state == 4 || state == 8 ? mixed : shown);
    }
    const auto known = m_plain.find(&instance);
    const int plain = known == m_plain.end() ? 0 : known->second;
    int state = mixed != 0 || (shown != 0 && hidden != 0) ? 3 : shown != 0 ? 5 : 1;
    state = plain == 3 ? 7 : plain == 1 ? state : state + 1;
    if (state != 2) {
      states[&instance] = state;
    }
    return state;
  }

  WalkingModel m_log;
  std::map<const zelk::BaseInstance*, int> m_plain;
  std::vector<Held> m_pending;
  std::vector<Held> m_ended;
  std::vector<Held> m_finished;
  bool m_repopulates = false;
  int m_edits = 0;
};

/// Plays the events of a scene to a model.
class SceneListener : public zelk::ShapeSceneObserver {
public:
  SceneListener(PanelModel& model, bool thumbnailsAreFlat) : m_model(model), m_thumbnailsAreFlat(thumbnailsAreFlat) {}

  void OnShapeInstanceCreate(const du::SmartPtr<zelk::ShapeInstance>& shapeInstance) override
  {
    m_model.OnCreate(*shapeInstance, m_thumbnailsAreFlat);
  }
  void OnShapeInstanceRemove(const du::SmartPtr<zelk::ShapeInstance>& shapeInstance) override
  {
    m_model.OnRemove(*shapeInstance);
  }
  void OnShapeInstanceVisibility(const du::SmartPtr<zelk::ShapeInstance>& shapeInstance, bool visible) override
  {
    m_model.OnVisibility(*shapeInstance, visible);
  }

private:
  PanelModel& m_model;
  const bool m_thumbnailsAreFlat;
};

/// Plays the events of a tree to a model.
class TreeListener : public zelk::TreeObserver {
public:
  explicit TreeListener(PanelModel& model) : m_model(model) {}

  void OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                        const du::SmartPtr<zelk::BaseInstance>& parent, const du::Symbol& /*name*/) override
  {
    m_model.OnTreeCreate(*instance, *parent);
  }
  void OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& /*instance*/,
                        const du::SmartPtr<zelk::BaseInstance>& parent) override
  {
    m_model.OnTreeRemove(parent.Get());
  }
  void OnInstanceName(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) override { m_model.OnTreeName(); }
  void OnInstanceExpanded(const du::SmartPtr<zelk::Instance>& instance) override { m_model.OnTreeExpanded(*instance); }
  void OnInstanceCollapsed(const du::SmartPtr<zelk::Instance>& instance) override
  {
    m_model.OnTreeCollapsed(*instance);
  }
  void OnEndUpdate() override { m_model.OnTreeEnd(); }

private:
  PanelModel& m_model;
};

}  // namespace sceneinfotest
