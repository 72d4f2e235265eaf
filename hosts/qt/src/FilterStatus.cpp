#include "FilterStatus.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QToolButton>

#include "SvgIcon.h"

namespace qthost {

namespace {

constexpr int s_silence = 150;

// The line keeps its height, so that the rows above stay where they are.
void KeepPlace(QWidget& widget)
{
  QSizePolicy policy = widget.sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget.setSizePolicy(policy);
  widget.hide();
}

}  // namespace

FilterStatus::FilterStatus(QWidget* parent)
    : QWidget(parent), m_text(new QLabel(this)), m_progress(new QProgressBar(this)), m_cancel(new QToolButton(this))
{
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(m_text, 1);
  layout->addWidget(m_progress);
  layout->addWidget(m_cancel);
  m_text->setObjectName(QStringLiteral("rowCount"));
  m_text->setTextFormat(Qt::PlainText);
  m_progress->setObjectName(QStringLiteral("filterProgress"));
  m_progress->setAccessibleName(tr("Progress of the filter"));
  m_progress->setToolTip(tr("How far the filter is"));
  m_progress->setRange(0, 100);
  m_progress->setMaximumWidth(120);
  KeepPlace(*m_progress);
  m_cancel->setObjectName(QStringLiteral("filterCancel"));
  m_cancel->setAccessibleName(tr("Cancel the filter"));
  m_cancel->setToolTip(tr("Cancel the filter"));
  m_cancel->setAutoRaise(true);
  m_cancel->setFocusPolicy(Qt::TabFocus);
  KeepPlace(*m_cancel);
  m_delay.setSingleShot(true);
  m_delay.setInterval(s_silence);
  connect(&m_delay, &QTimer::timeout, this, [this] { _ShowWork(true); });
  connect(m_cancel, &QToolButton::clicked, this, &FilterStatus::CancelChosen);
}

FilterStatus::~FilterStatus() = default;

void FilterStatus::SetText(const QString& text)
{
  if (text == m_text->text()) {
    return;
  }
  m_text->setText(text);
  m_text->setAccessibleName(text);
  QAccessibleEvent told(m_text, QAccessible::Alert);
  QAccessible::updateAccessibility(&told);
}

void FilterStatus::SetWorking(bool isWorking)
{
  if (isWorking) {
    m_progress->setValue(0);
    m_delay.start();
  } else {
    m_delay.stop();
    _ShowWork(false);
  }
}

void FilterStatus::SetPercent(int percent)
{
  m_progress->setValue(percent);
}

void FilterStatus::_ShowWork(bool isShown)
{
  m_progress->setVisible(isShown);
  m_cancel->setVisible(isShown);
}

void FilterStatus::SetIcons(const QPalette& palette)
{
  m_cancel->setIcon(MakeSvgIcon(QStringLiteral("cancel"), palette));
}

}  // namespace qthost
