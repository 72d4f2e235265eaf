#include "MessageBar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QStyle>
#include <QToolButton>

namespace viewer {

namespace {

constexpr qsizetype s_mostLines = 6;

/// The lines that there is room for.
QString MakeText(const QStringList& messages)
{
  if (messages.size() <= s_mostLines) {
    return messages.join('\n');
  }
  return messages.first(s_mostLines).join('\n') + '\n'
         + MessageBar::tr("and %n more", nullptr, static_cast<int>(messages.size() - s_mostLines));
}

}  // namespace

MessageBar::MessageBar(QWidget* parent) : QFrame(parent), m_text(new QLabel(this))
{
  setFrameShape(QFrame::StyledPanel);
  setObjectName("messages");
  setAccessibleName(tr("Messages"));
  m_text->setWordWrap(true);
  // File names come from anywhere and must not be taken for markup.
  m_text->setTextFormat(Qt::PlainText);
  m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* const icon = new QLabel(this);
  icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(20, 20));
  icon->setAccessibleName(tr("Warning"));
  auto* const close = new QToolButton(this);
  close->setObjectName("closeMessages");
  close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
  close->setAutoRaise(true);
  close->setToolTip(tr("Close these messages"));
  close->setAccessibleName(close->toolTip());
  connect(close, &QToolButton::clicked, this, &MessageBar::Clear);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(8, 4, 4, 4);
  row->addWidget(icon, 0, Qt::AlignTop);
  row->addWidget(m_text, 1);
  row->addWidget(close, 0, Qt::AlignTop);
  hide();
}

void MessageBar::Add(const QString& message)
{
  if (m_messages.contains(message)) {
    return;
  }
  m_messages += message;
  m_text->setText(MakeText(m_messages));
  m_text->setToolTip(m_messages.size() > s_mostLines ? m_messages.join('\n') : QString());
  setAccessibleDescription(m_text->text());
  show();
  QAccessibleEvent event(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

void MessageBar::Clear()
{
  m_messages.clear();
  m_text->clear();
  hide();
}

}  // namespace viewer
