#pragma once

#include "zelk/BaseTreeObserver.h"
#include "zelk/Instance.h"
#include "zelk/ViewableData.h"

namespace zelk {

/// Listens to the tree of a world.
class TreeObserver : public BaseTreeObserver {
public:
  TreeObserver() = default;

  /// The content behind a proxy has been read, or has been let go of again. The children come and go by events of their
  /// own.
  virtual void OnInstanceExpanded(const du::SmartPtr<Instance>& instance);
  virtual void OnInstanceCollapsed(const du::SmartPtr<Instance>& instance);
  /// The instance is no proxy any more.
  virtual void OnInstanceProxyToNode(const du::SmartPtr<Instance>& instance);
  virtual void OnInstanceAddViewable(const du::SmartPtr<Instance>& instance,
                                     const du::SmartPtr<ViewableData>& viewable);
  virtual void OnInstanceRemoveViewable(const du::SmartPtr<Instance>& instance,
                                        const du::SmartPtr<ViewableData>& viewable);
  /// Properties that were left out when the tree was read have come.
  virtual void OnPropertyGroupsLoaded();
  virtual void OnModelExtentsChanged();
  virtual void OnUDAPChanged(const du::SmartPtr<Instance>& instance);
  virtual void OnInstanceLocation(const du::SmartPtr<Instance>& instance);
  virtual void OnInstanceAppearanceOverride(const du::SmartPtr<Instance>& instance);
  virtual void OnInstanceSbomChanged(const du::SmartPtr<Instance>& instance);
  virtual void OnStructureAdded(const du::SmartPtr<Instance>& instance);
};

}  // namespace zelk
