#include "FilterLine.h"

#include <QKeyEvent>
#include <QToolButton>

namespace qthost {

FilterLine::FilterLine(QWidget* parent) : QLineEdit(parent)
{
  setObjectName(QStringLiteral("filterLine"));
  setPlaceholderText(tr("Filter"));
  setAccessibleName(tr("Filter"));
  setAccessibleDescription(tr("Text to look for. Enter filters at once, Escape clears the text."));
  setToolTip(
      tr("<p>Words to look for, in any order. A word with * or ? has to match a name from its beginning to its "
         "end; \"quotation marks\" keep words together.</p><p>Enter filters at once, Escape clears the text.</p>"));
  setClearButtonEnabled(true);
  // The button itself has no words.
  for (QToolButton* const button : findChildren<QToolButton*>()) {
    button->setAccessibleName(tr("Clear the text"));
    button->setToolTip(tr("Clear the text"));
  }
}

// Escape belongs to the text as long as there is any, and to the window afterwards.
bool FilterLine::event(QEvent* event)
{
  if (event->type() == QEvent::ShortcutOverride) {
    const auto* const key = dynamic_cast<const QKeyEvent*>(event);
    if (key && key->key() == Qt::Key_Escape && !text().isEmpty()) {
      event->accept();
      return true;
    }
  }
  return QLineEdit::event(event);
}

void FilterLine::keyPressEvent(QKeyEvent* event)
{
  if (event->key() == Qt::Key_Escape && !text().isEmpty()) {
    clear();
    Q_EMIT Escaped();
    return;
  }
  if (event->key() == Qt::Key_Down && event->modifiers() == Qt::NoModifier) {
    Q_EMIT LeftDownwards();
    return;
  }
  QLineEdit::keyPressEvent(event);
}

}  // namespace qthost
