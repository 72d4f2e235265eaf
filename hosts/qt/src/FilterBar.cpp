#include "FilterBar.h"

#include <QAction>
#include <QHBoxLayout>
#include <QToolButton>

#include "FilterLine.h"
#include "FilterMenu.h"
#include "SvgIcon.h"

namespace qthost {

namespace {

constexpr int s_pause = 200;

QToolButton* MakeButton(QWidget& parent, const QString& objectName, const QString& name)
{
  auto* const button = new QToolButton(&parent);
  button->setObjectName(objectName);
  button->setAccessibleName(name);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

}  // namespace

FilterBar::FilterBar(QWidget* parent)
    : QWidget(parent),
      m_line(new FilterLine(this)),
      m_options(MakeButton(*this, QStringLiteral("filterOptions"), tr("Filter options"))),
      m_list(MakeButton(*this, QStringLiteral("listToggle"), tr("Show as a list"))),
      m_menu(new FilterMenu(this))
{
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins({});
  layout->setSpacing(2);
  layout->addWidget(m_line, 1);
  layout->addWidget(m_options);
  layout->addWidget(m_list);
  m_options->setMenu(m_menu);
  m_options->setPopupMode(QToolButton::InstantPopup);
  m_list->setDefaultAction(&m_menu->GetListAction());
  m_pause.setSingleShot(true);
  m_pause.setInterval(s_pause);
  setFocusProxy(m_line);

  connect(m_line, &QLineEdit::textChanged, &m_pause, qOverload<>(&QTimer::start));
  connect(&m_pause, &QTimer::timeout, this, &FilterBar::_TakeText);
  connect(m_line, &QLineEdit::returnPressed, this, &FilterBar::_Confirm);
  connect(m_line, &FilterLine::Escaped, this, &FilterBar::_Tell);
  connect(m_line, &FilterLine::LeftDownwards, this, &FilterBar::LeftDownwards);
  connect(m_menu, &FilterMenu::Chosen, this, &FilterBar::_Tell);
  connect(m_menu, &FilterMenu::ClearChosen, this, &FilterBar::Clear);
  _ShowCriteria();
}

FilterBar::~FilterBar() = default;

void FilterBar::_TakeText()
{
  FilterSettings settings = m_menu->GetSettings();
  settings.text = m_line->text();
  m_menu->SetSettings(settings);
  Q_EMIT Changed();
}

// What has been typed so far goes along with any other choice.
void FilterBar::_Tell()
{
  m_pause.stop();
  _ShowCriteria();
  _TakeText();
}

void FilterBar::_Confirm()
{
  m_pause.stop();
  FilterSettings settings = m_menu->GetSettings();
  settings.text = m_line->text();
  m_menu->SetSettings(settings);
  Q_EMIT Confirmed();
}

void FilterBar::Clear()
{
  const FilterSettings& now = m_menu->GetSettings();
  FilterSettings cleared = now;
  cleared.text.clear();
  cleared.selectedOnly = cleared.issuesOnly = cleared.partsOnly = false;
  cleared.visibility = FilterSettings::Visibility::Any;
  SetSettings(cleared);
  Q_EMIT Changed();
}

const FilterSettings& FilterBar::GetSettings() const
{
  return m_menu->GetSettings();
}

void FilterBar::SetSettings(const FilterSettings& settings)
{
  m_menu->SetSettings(settings);
  m_line->setText(settings.text);
  m_pause.stop();
  _ShowCriteria();
}

void FilterBar::SetColumns(const std::vector<du::DualSymbol>& columns)
{
  m_menu->SetColumns(columns);
}

void FilterBar::SetPause(int milliseconds)
{
  m_pause.setInterval(milliseconds);
}

void FilterBar::FocusText()
{
  m_line->setFocus(Qt::ShortcutFocusReason);
  m_line->selectAll();
}

// A filter that leaves rows out must be seen to do so, with its menu closed.
void FilterBar::_ShowCriteria()
{
  const QStringList criteria = m_menu->DescribeCriteria();
  const QString words = criteria.join(QStringLiteral(", "));
  m_options->setText(criteria.isEmpty() ? QString() : QStringLiteral("(%1)").arg(criteria.size()));
  m_options->setToolButtonStyle(criteria.isEmpty() ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
  m_options->setToolTip(criteria.isEmpty() ? tr("Filter options") : tr("Filter options: %1").arg(words));
  m_options->setAccessibleDescription(words);
}

void FilterBar::SetIcons(const QPalette& palette)
{
  m_options->setIcon(MakeSvgIcon(QStringLiteral("options"), palette));
  m_menu->SetIcons(palette);
}

}  // namespace qthost
