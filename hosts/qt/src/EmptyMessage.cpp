#include "EmptyMessage.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace qthost {

// Not in the viewport, which takes its children along when it scrolls.
EmptyMessage::EmptyMessage(QAbstractScrollArea& view)
    : QFrame(&view), m_view(view), m_text(new QLabel(this)), m_wayOut(new QPushButton(this))
{
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(m_text);
  layout->addWidget(m_wayOut, 0, Qt::AlignHCenter);
  setObjectName(QStringLiteral("emptyMessage"));
  m_text->setObjectName(QStringLiteral("emptyText"));
  m_text->setAlignment(Qt::AlignCenter);
  m_text->setTextFormat(Qt::PlainText);
  m_text->setWordWrap(true);
  m_wayOut->setObjectName(QStringLiteral("emptyWayOut"));
  connect(m_wayOut, &QPushButton::clicked, this, &EmptyMessage::WayOutChosen);
  m_view.viewport()->installEventFilter(this);
  hide();
}

void EmptyMessage::SetMessage(const QString& text, const QString& wayOut)
{
  m_text->setText(text);
  m_text->setAccessibleName(text);
  m_wayOut->setText(wayOut);
  m_wayOut->setAccessibleName(wayOut);
  m_wayOut->setToolTip(wayOut);
  m_wayOut->setVisible(!wayOut.isEmpty());
  setVisible(!text.isEmpty());
  _Place();
}

bool EmptyMessage::eventFilter(QObject* watched, QEvent* event)
{
  if (event->type() == QEvent::Resize) {
    _Place();
  }
  return QFrame::eventFilter(watched, event);
}

void EmptyMessage::_Place()
{
  const QRect room = m_view.viewport()->geometry();
  QRect place(0, 0, room.width(),
              layout()->hasHeightForWidth() ? layout()->heightForWidth(room.width()) : sizeHint().height());
  place.moveCenter(room.center());
  setGeometry(place);
  raise();
}

}  // namespace qthost
