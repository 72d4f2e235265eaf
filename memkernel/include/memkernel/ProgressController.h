#pragma once

#include <vector>

#include "zelk/ProgressController.h"

namespace memkernel {

/// Feeds progress controls from their events. Owner's thread.
class ProgressController final : public zelk::ProgressController {
public:
  ProgressController();
  ~ProgressController() override;

  /// A control whose event has been completed already is told so in a later turn of the loop.
  void AddCtrl(du::SmartPtr<zelk::ProgressCtrl> ctrl) override;
  /// Lets go of all controls without a word, for the end of the world.
  void Clear();
  [[nodiscard]] const std::vector<du::SmartPtr<zelk::ProgressCtrl>>& GetCtrls() const noexcept { return m_ctrls; }

private:
  void _OnProgress(const zelk::ProgressCtrl* ctrl, unsigned char percent, bool isCompleted);

  std::vector<du::SmartPtr<zelk::ProgressCtrl>> m_ctrls;
};

}  // namespace memkernel
