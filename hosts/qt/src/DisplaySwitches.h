#pragma once

#include <QObject>

namespace qthost {

/// Tells the panels of the process that one of the display switches, which they share, has changed. Lives as long as
/// the process; thread of the application's widgets.
class DisplaySwitches : public QObject {
  Q_OBJECT

public:
  [[nodiscard]] static DisplaySwitches& Get();

  void SetShowsBodies(bool isOn);
  void SetCollapsesInstances(bool isOn);

Q_SIGNALS:
  void BodiesChanged(bool isOn);
  void CollapseChanged(bool isOn);
};

}  // namespace qthost
