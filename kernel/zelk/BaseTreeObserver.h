#pragma once

#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "zelk/BaseInstance.h"
#include "zelk/Observer.h"

namespace zelk {

/// Listens to a tree. Every run of callbacks stands between `OnBeginUpdate` and `OnEndUpdate`; each edit is announced
/// before the next one is made, and no lock is held while a callback runs.
class BaseTreeObserver : public Observer {
public:
  /// The tree ends; `OnUnregister` follows.
  virtual void OnDestroy();
  /// One instance, not what will be below it: creations come one by one, parents first. The symbol is the instance's
  /// name.
  virtual void OnInstanceCreate(const du::SmartPtr<BaseInstance>& instance, const du::SmartPtr<BaseInstance>& parent,
                                const du::Symbol& name);
  /// The instance has been unlinked from `parent`, with its own subtree intact below it; its descendants are announced
  /// next, parents first, each with its parent.
  virtual void OnInstanceRemove(const du::SmartPtr<BaseInstance>& instance, const du::SmartPtr<BaseInstance>& parent);
  virtual void OnInstanceName(const du::SmartPtr<BaseInstance>& instance);
  /// What the names of all instances are made of has changed.
  virtual void OnDisplayNamesChanged();
  /// The properties that a tree panel shows as columns have changed.
  virtual void OnTreeColumnsChanged();
  virtual void OnAddPropertyGroup(const du::Symbol& group);
  virtual void OnRemovePropertyGroup(const du::Symbol& group);
  virtual void OnAddProperty(const du::Symbol& group, const du::Symbol& name);
  virtual void OnRemoveProperty(const du::Symbol& group, const du::Symbol& name);
  virtual void OnInstancePropertiesChanged(const du::SmartPtr<BaseInstance>& instance);
};

}  // namespace zelk
