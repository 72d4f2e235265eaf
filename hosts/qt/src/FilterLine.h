#pragma once

#include <QLineEdit>

namespace qthost {

/// Where the text of a filter is typed. Owner's thread.
class FilterLine : public QLineEdit {
  Q_OBJECT

public:
  explicit FilterLine(QWidget* parent);

Q_SIGNALS:
  /// Escape has cleared the text.
  void Escaped();
  /// The user wants to go down to the rows.
  void LeftDownwards();

protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace qthost
