#pragma once

#include <QFrame>
#include <QLabel>
#include <QStringList>

namespace viewer {

/// What went wrong, above the views, until somebody closes it. Hidden while there is nothing to say.
class MessageBar final : public QFrame {
  Q_OBJECT

public:
  explicit MessageBar(QWidget* parent = nullptr);

  /// Adds a line; one that stands there already is not repeated.
  void Add(const QString& message);
  void Clear();
  [[nodiscard]] const QStringList& GetMessages() const noexcept { return m_messages; }

private:
  QStringList m_messages;
  QLabel* const m_text;
};

}  // namespace viewer
