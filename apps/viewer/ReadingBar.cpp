#include "ReadingBar.h"

#include <QFileInfo>
#include <QHBoxLayout>

namespace viewer {

ReadingBar::ReadingBar(QWidget* parent)
    : QWidget(parent), m_file(new QLabel(this)), m_progress(new QProgressBar(this)), m_cancel(new QToolButton(this))
{
  setObjectName("reading");
  m_file->setTextFormat(Qt::PlainText);
  m_progress->setRange(0, 100);
  m_progress->setMaximumWidth(180);
  m_progress->setAccessibleName(tr("Progress of reading"));
  m_cancel->setObjectName("cancelReading");
  m_cancel->setText(tr("Cancel"));
  m_cancel->setToolTip(tr("Stop reading; what is open stays"));
  connect(m_cancel, &QToolButton::clicked, this, &ReadingBar::CancelRequested);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(m_file);
  row->addWidget(m_progress);
  row->addWidget(m_cancel);
  hide();
}

void ReadingBar::Begin(const QString& file, qsizetype waiting)
{
  const QString name = QFileInfo(file).fileName();
  m_file->setText(waiting > 0 ? tr("Reading %1, %2 more to come").arg(name).arg(waiting) : tr("Reading %1").arg(name));
  m_file->setToolTip(file);
  m_progress->setValue(0);
  m_cancel->setEnabled(true);
  show();
}

void ReadingBar::SetProgress(int percent, const QString& stage)
{
  m_progress->setValue(percent);
  m_progress->setToolTip(stage);
}

void ReadingBar::End()
{
  hide();
}

}  // namespace viewer
