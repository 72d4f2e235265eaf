#include "zelk/ProgressCtrl.h"

namespace zelk {

ProgressCtrl::ProgressCtrl(const du::SmartPtr<AsyncEvent>& event) : m_event(event) {}

ProgressCtrl::~ProgressCtrl() = default;

void ProgressCtrl::OnProgress(unsigned char /*percent*/) {}

void ProgressCtrl::OnFinished() {}

}  // namespace zelk
