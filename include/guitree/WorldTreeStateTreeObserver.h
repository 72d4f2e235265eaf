#pragma once

#include "du/SmartPtr.h"
#include "guitree/GuiTreeTreeObserverHelper.h"
#include "zelk/Tree.h"
#include "zelk/TreeObserver.h"

namespace guitree {

class WorldTreeState;

/// Listens to the kernel's tree for a `WorldTreeState`: turns its events into edits of rows, a refill at the end of the
/// update, or a refresh of names. Made and registered by the state. May outlive it, and does nothing from the moment on
/// at which the state has deregistered it or has ended. Owner's thread.
class WorldTreeStateTreeObserver : public zelk::TreeObserver, public GuiTree::GuiTreeTreeObserverHelper {
public:
  /// `state` must not be null and must have its `GuiTree`; `observedTree` may be null.
  WorldTreeStateTreeObserver(WorldTreeState* state, const du::SmartPtr<zelk::Tree>& observedTree);
  WorldTreeStateTreeObserver(const WorldTreeStateTreeObserver&) = delete;
  WorldTreeStateTreeObserver& operator=(const WorldTreeStateTreeObserver&) = delete;
  ~WorldTreeStateTreeObserver() override;

  /// Null once the state is done with the observer.
  [[nodiscard]] WorldTreeState* GetTreeState() const noexcept { return treeState; }
  /// Null as well from then on, so that a tree never waits for an observer that waits for it.
  [[nodiscard]] du::SmartPtr<zelk::Tree> GetTree() const { return tree; }

  [[nodiscard]] du::Symbol GetObjectClass() const override;
  void OnDestroy() override;
  void OnEndUpdate() override;
  void OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                        const du::SmartPtr<zelk::BaseInstance>& parent, const du::Symbol& name) override;
  void OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                        const du::SmartPtr<zelk::BaseInstance>& parent) override;
  void OnInstanceName(const du::SmartPtr<zelk::BaseInstance>& instance) override;
  /// The rows are refilled if the filter looks at names or if they are sorted by them.
  void OnDisplayNamesChanged() override;
  /// The rows are refilled if the filter looks at names or if they are sorted at all.
  void OnTreeColumnsChanged() override;
  void OnInstanceExpanded(const du::SmartPtr<zelk::Instance>& instance) override;
  /// Unlike the expansion, which leaves visibility to a refill that is due, this hides the instance at once.
  void OnInstanceCollapsed(const du::SmartPtr<zelk::Instance>& instance) override;
  /// Only opens the bracket, and only if the host cannot show the change in place.
  void OnInstanceProxyToNode(const du::SmartPtr<zelk::Instance>& instance) override;
  /// A record without a viewable is ignored, here and below.
  void OnInstanceAddViewable(const du::SmartPtr<zelk::Instance>& instance,
                             const du::SmartPtr<zelk::ViewableData>& viewable) override;
  void OnInstanceRemoveViewable(const du::SmartPtr<zelk::Instance>& instance,
                                const du::SmartPtr<zelk::ViewableData>& viewable) override;
  void OnPropertyGroupsLoaded() override;

private:
  friend class WorldTreeState;

  /// From now on every callback does nothing.
  void _Detach();
  /// The state, held for as long as it is at work; null when there is nobody to work for.
  [[nodiscard]] du::SmartPtr<WorldTreeState> _GetLiveState() const;
  void _UpdateNameAndType(const du::SmartPtr<zelk::Instance>& instance);
  void _OnViewablesChanged(const du::SmartPtr<zelk::Instance>& instance,
                           const du::SmartPtr<zelk::ViewableData>& viewable);

  WorldTreeState* treeState;
  du::SmartPtr<zelk::Tree> tree;
};

}  // namespace guitree
