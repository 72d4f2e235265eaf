#include "memkernel/ProgressController.h"

#include <algorithm>
#include <utility>

namespace memkernel {

ProgressController::ProgressController() = default;

ProgressController::~ProgressController() = default;

void ProgressController::AddCtrl(du::SmartPtr<zelk::ProgressCtrl> ctrl)
{
  if (!ctrl || !ctrl->GetEvent()) {
    return;
  }
  m_ctrls.push_back(ctrl);
  ctrl->GetEvent()->AddProgressListener(
      [self = du::SmartPtr<ProgressController>(this), raw = ctrl.Get()](unsigned char percent, bool isCompleted) {
        self->_OnProgress(raw, percent, isCompleted);
      });
}

void ProgressController::Clear()
{
  // Released outside of the member: what dies may come back.
  const auto ctrls = std::exchange(m_ctrls, {});
}

void ProgressController::_OnProgress(const zelk::ProgressCtrl* ctrl, unsigned char percent, bool isCompleted)
{
  const auto found = std::find(m_ctrls.begin(), m_ctrls.end(), ctrl);
  if (found == m_ctrls.end()) {
    return;
  }
  const du::SmartPtr<zelk::ProgressCtrl> told = *found;
  if (!isCompleted) {
    told->OnProgress(percent);
    return;
  }
  m_ctrls.erase(found);
  told->OnFinished();
}

}  // namespace memkernel
