#include "texthost/FilterProgress.h"

#include <algorithm>

namespace texthost {

FilterProgress::FilterProgress(const du::SmartPtr<zelk::AsyncEvent>& event) : ProgressCtrl(event) {}

FilterProgress::~FilterProgress() = default;

std::string FilterProgress::GetLine() const
{
  return m_isFinished ? "" : "Filtering " + std::to_string(m_percent) + '%';
}

bool FilterProgress::IsCancelled() const
{
  return GetEvent() && GetEvent()->IsCanceled();
}

void FilterProgress::Cancel()
{
  if (GetEvent()) {
    GetEvent()->Cancel();
  }
}

// A job of two passes reports more than 100 on the way to its end.
void FilterProgress::OnProgress(unsigned char percent)
{
  m_percent = std::min<int>(percent, 100);
}

void FilterProgress::OnFinished()
{
  m_isFinished = true;
}

}  // namespace texthost
