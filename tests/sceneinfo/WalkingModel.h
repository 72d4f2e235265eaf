#pragma once

#include <map>
#include <vector>

#include "guitree/SceneInfoLog.h"

namespace sceneinfotest {

/// The visible states of a scene as they are described: each time all children are looked at, one after the other.
class WalkingModel {
public:
  using States = std::map<const zelk::BaseInstance*, int>;

  [[nodiscard]] const States& GetStates() const { return m_states; }
  [[nodiscard]] const States& GetChanges() const { return m_changes; }

  bool SetVisible(const zelk::BaseInstance* instance, int state)
  {
    const auto change = m_changes.find(instance);
    const int before = change == m_changes.end() ? _GetState(instance) : change->second % 16;
    const int present = change == m_changes.end() ? before : change->second / 16;
    if (present == state) {
      return false;
    }
    m_changes[instance] = state * 16 + before;
    if (before == state) {
      m_changes.erase(instance);
    }
    m_states[instance] = state;
    if (state == guitree::VisibleStateHidden) {
      m_states.erase(instance);
    }
    return true;
  }

  void SetVisible(const zelk::BaseInstance* instance, guitree::ECompVisible visible, bool propagate)
  {
    if (!SetVisible(instance, _WorkOut(*instance, visible)) || !propagate) {
      return;
    }
    du::SmartPtr<zelk::BaseInstance> parent;
    instance->GetBaseParent(parent);
    if (parent) {
      SetVisible(parent.Get(), _GetPlain(parent.Get()), true);
    }
  }

  void Remove(const zelk::BaseInstance* instance) { m_states.erase(instance); }
  void ClearChanges() { m_changes.clear(); }
  void Clear()
  {
    m_states.clear();
    m_changes.clear();
  }

private:
  [[nodiscard]] int _GetState(const zelk::BaseInstance* instance) const
  {
    const auto known = m_states.find(instance);
    return known == m_states.end() ? 2 : known->second;
  }

  [[nodiscard]] guitree::ECompVisible _GetPlain(const zelk::BaseInstance* instance) const
  {
    switch (_GetState(instance)) {
      case 7:
        return guitree::CompThumbnailVisible;
      case 8:
        return guitree::CompThumbnailHidden;
      case 1:
      case 3:
      case 5:
        return guitree::CompVisible;
      default:
        return guitree::CompHidden;
    }
  }

  [[nodiscard]] int _WorkOut(const zelk::BaseInstance& instance, guitree::ECompVisible visible) const
  {
    switch (visible) {
      case guitree::CompThumbnailVisible:
        return 7;
      case guitree::CompThumbnailHidden:
        return 8;
      case guitree::CompVisible:
        return _Walk(instance);
      default:
        return _Walk(instance) + 1;
    }
  }

  [[nodiscard]] int _Walk(const zelk::BaseInstance& instance) const
  {
    std::vector<du::SmartPtr<zelk::BaseInstance>> children;
    instance.GetBaseChildren(children);
    int aggregate = 1;
    bool sawHidden = false;
    for (const auto& child : children) {
      if (const auto full = du::DynamicCast<zelk::Instance>(child); full && full->Is3dSymbol()) {
        continue;
      }
      switch (_GetState(child.Get())) {
        case 1:
        case 5:
        case 6:
        case 7:
          if (sawHidden) {
            return 3;
          }
          aggregate = 5;
          break;
        case 2:
          if (aggregate == 5) {
            return 3;
          }
          sawHidden = true;
          break;
        case 3:
        case 4:
        case 8:
          return 3;
        default:
          break;
      }
    }
    return aggregate;
  }

  States m_states;
  States m_changes;
};

}  // namespace sceneinfotest
