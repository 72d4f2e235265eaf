#pragma once

#include <functional>
#include <map>
#include <set>

#include "guitree/TypeIconMap.h"
#include "testsupport/ScriptedHost.h"

namespace sceneinfotest {

/// A host that knows of its rows what it is told: a row starts hidden and without an icon, and changes by the two calls
/// for repaints alone.
class RowHost : public testsupport::ScriptedHost {
public:
  struct Row {
    int state = guitree::VisibleStateHidden;
    /// -1 while nobody has told it.
    int icon = -1;
  };

  std::map<const zelk::BaseInstance*, Row> rows;
  /// Whether a word said anything else than the full map.
  bool wasContradicted = false;
  /// Where icons are asked for in a full repaint.
  du::SmartPtr<zelk::Scene> scene;
  /// Runs when a call for a repaint has been carried out.
  std::function<void()> onTold;

  void ClearTree() override { rows.clear(); }
  using ScriptedHost::InstanceCreate;
  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                      const du::SmartPtr<zelk::BaseInstance>& /*parent*/,
                      const du::SmartPtr<guitree::TreeSelectionController>& /*controller*/,
                      bool /*assocHlight*/) override
  {
    rows[instance.Get()] = {};
  }
  void InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                      const du::SmartPtr<zelk::BaseInstance>& /*parent*/, bool /*repopulatePending*/) override
  {
    std::set<du::SmartPtr<zelk::BaseInstance>> gone;
    zelk::BaseInstance::GetInstancesAndDescendents({instance}, gone);
    for (const auto& row : gone) {
      rows.erase(row.Get());
    }
  }
  void UpdateVisAndTypeIcons(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                             guitree::TypeIconMap* typeIconMap) override
  {
    for (auto& [instance, row] : rows) {
      row.state = visibleMap ? GetState(*visibleMap, instance) : guitree::VisibleStateHidden;
      if (typeIconMap) {
        typeIconMap->Find(instance, row.icon, scene);
      }
    }
    _Told();
  }
  void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                                   const du::HashMap<const zelk::BaseInstance*, int>* visibleChangeMap,
                                   guitree::TypeIconMap* /*typeIconMap*/,
                                   const du::HashMap<const zelk::BaseInstance*, int>* typeIconChangeMap) override
  {
    for (const auto& [instance, word] : *visibleChangeMap) {
      if (const auto row = rows.find(instance); row != rows.end()) {
        wasContradicted = wasContradicted || row->second.state != word % 16;
        row->second.state = word / 16;
        wasContradicted = wasContradicted || row->second.state != GetState(*visibleMap, instance);
      }
    }
    for (const auto& [instance, icon] : *typeIconChangeMap) {
      if (const auto row = rows.find(instance); row != rows.end()) {
        row->second.icon = icon;
      }
    }
    _Told();
  }

  [[nodiscard]] static int GetState(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>& visibleMap,
                                    const zelk::BaseInstance* instance)
  {
    const auto known = visibleMap.find(instance);
    return known == visibleMap.end() ? guitree::VisibleStateHidden : known->second;
  }

private:
  void _Told() const
  {
    if (onTold) {
      onTold();
    }
  }
};

}  // namespace sceneinfotest
