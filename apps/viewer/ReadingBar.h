#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QToolButton>
#include <QWidget>

namespace viewer {

/// In the status bar: which file is being read, how far it is, and a button that ends it. Hidden while nothing is read.
class ReadingBar final : public QWidget {
  Q_OBJECT

public:
  explicit ReadingBar(QWidget* parent = nullptr);

  void Begin(const QString& file, qsizetype waiting);
  void SetProgress(int percent, const QString& stage);
  void End();

Q_SIGNALS:
  void CancelRequested();

private:
  QLabel* const m_file;
  QProgressBar* const m_progress;
  QToolButton* const m_cancel;
};

}  // namespace viewer
