#include "zelk/TreeObserver.h"

namespace zelk {

void TreeObserver::OnInstanceExpanded(const du::SmartPtr<Instance>& /*instance*/) {}
void TreeObserver::OnInstanceCollapsed(const du::SmartPtr<Instance>& /*instance*/) {}
void TreeObserver::OnInstanceProxyToNode(const du::SmartPtr<Instance>& /*instance*/) {}
void TreeObserver::OnInstanceAddViewable(const du::SmartPtr<Instance>& /*instance*/,
                                         const du::SmartPtr<ViewableData>& /*viewable*/)
{
}
void TreeObserver::OnInstanceRemoveViewable(const du::SmartPtr<Instance>& /*instance*/,
                                            const du::SmartPtr<ViewableData>& /*viewable*/)
{
}
void TreeObserver::OnPropertyGroupsLoaded() {}
void TreeObserver::OnModelExtentsChanged() {}
void TreeObserver::OnUDAPChanged(const du::SmartPtr<Instance>& /*instance*/) {}
void TreeObserver::OnInstanceLocation(const du::SmartPtr<Instance>& /*instance*/) {}
void TreeObserver::OnInstanceAppearanceOverride(const du::SmartPtr<Instance>& /*instance*/) {}
void TreeObserver::OnInstanceSbomChanged(const du::SmartPtr<Instance>& /*instance*/) {}
void TreeObserver::OnStructureAdded(const du::SmartPtr<Instance>& /*instance*/) {}

}  // namespace zelk
