#pragma once

#include <algorithm>

#include <QPointer>

#include "qthost/GuiTreeItemModel.h"
#include "zelk/ProgressCtrl.h"

namespace qthost {

/// How far one filter job is. The kernel may hold it for longer than the model lives. Owner's thread.
class FilterProgress final : public zelk::ProgressCtrl {
public:
  FilterProgress(const du::SmartPtr<zelk::AsyncEvent>& event, GuiTreeItemModel* model)
      : ProgressCtrl(event), m_model(model)
  {
  }

  [[nodiscard]] bool IsFinished() const noexcept { return m_isFinished; }
  [[nodiscard]] bool IsCancelled() const { return GetEvent() && GetEvent()->IsCanceled(); }
  void Cancel()
  {
    if (GetEvent()) {
      GetEvent()->Cancel();
    }
  }
  /// Another job has taken its place.
  void Leave() { m_model = nullptr; }

  // A job of two passes reports more than 100 on the way to its end.
  void OnProgress(unsigned char percent) override
  {
    if (m_model) {
      Q_EMIT m_model->FilterProgressed(std::min<int>(percent, 100));
    }
  }
  void OnFinished() override { m_isFinished = true; }

private:
  QPointer<GuiTreeItemModel> m_model;
  bool m_isFinished = false;
};

}  // namespace qthost
