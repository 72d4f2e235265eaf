#pragma once

#include <QFrame>

class QAbstractScrollArea;
class QLabel;
class QPushButton;

namespace qthost {

/// Words in the middle of a view that has nothing to show, and a way out of it. Belongs to the view.
class EmptyMessage : public QFrame {
  Q_OBJECT

public:
  explicit EmptyMessage(QAbstractScrollArea& view);

  /// An empty text hides it.
  void SetMessage(const QString& text, const QString& wayOut = {});

Q_SIGNALS:
  void WayOutChosen();

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void _Place();

  QAbstractScrollArea& m_view;
  QLabel* m_text;
  QPushButton* m_wayOut;
};

}  // namespace qthost
