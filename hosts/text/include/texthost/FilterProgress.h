#pragma once

#include <string>

#include "du/SmartPtr.h"
#include "zelk/AsyncEvent.h"
#include "zelk/ProgressCtrl.h"

namespace texthost {

/// How far one filter job is, for a line of text. The kernel feeds it until the job has ended. Owner's thread.
class FilterProgress final : public zelk::ProgressCtrl {
public:
  explicit FilterProgress(const du::SmartPtr<zelk::AsyncEvent>& event);
  ~FilterProgress() override;

  /// Such as `Filtering 40%`; empty once the job has ended.
  [[nodiscard]] std::string GetLine() const;
  [[nodiscard]] bool IsFinished() const noexcept { return m_isFinished; }
  [[nodiscard]] bool IsCancelled() const;
  /// Asks the job to end, which it does at its next instance. Nothing once it has ended.
  void Cancel();

  void OnProgress(unsigned char percent) override;
  void OnFinished() override;

private:
  /// Of 100.
  int m_percent = 0;
  bool m_isFinished = false;
};

}  // namespace texthost
