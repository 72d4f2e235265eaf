#include "zelk/BaseTreeObserver.h"

namespace zelk {

void BaseTreeObserver::OnDestroy() {}
void BaseTreeObserver::OnInstanceCreate(const du::SmartPtr<BaseInstance>& /*instance*/,
                                        const du::SmartPtr<BaseInstance>& /*parent*/, const du::Symbol& /*name*/)
{
}
void BaseTreeObserver::OnInstanceRemove(const du::SmartPtr<BaseInstance>& /*instance*/,
                                        const du::SmartPtr<BaseInstance>& /*parent*/)
{
}
void BaseTreeObserver::OnInstanceName(const du::SmartPtr<BaseInstance>& /*instance*/) {}
void BaseTreeObserver::OnDisplayNamesChanged() {}
void BaseTreeObserver::OnTreeColumnsChanged() {}
void BaseTreeObserver::OnAddPropertyGroup(const du::Symbol& /*group*/) {}
void BaseTreeObserver::OnRemovePropertyGroup(const du::Symbol& /*group*/) {}
void BaseTreeObserver::OnAddProperty(const du::Symbol& /*group*/, const du::Symbol& /*name*/) {}
void BaseTreeObserver::OnRemoveProperty(const du::Symbol& /*group*/, const du::Symbol& /*name*/) {}
void BaseTreeObserver::OnInstancePropertiesChanged(const du::SmartPtr<BaseInstance>& /*instance*/) {}

}  // namespace zelk
