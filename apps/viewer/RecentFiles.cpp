#include "RecentFiles.h"

#include <QFileInfo>
#include <QSettings>

namespace viewer {

namespace {

constexpr const char* s_key = "recentFiles";

}  // namespace

RecentFiles::RecentFiles(QMenu& menu, QObject* parent) : QObject(parent), m_menu(menu)
{
  // Only the tips tell files of one name apart.
  menu.setToolTipsVisible(true);
  connect(&menu, &QMenu::aboutToShow, this, &RecentFiles::_FillMenu);
  _FillMenu();
}

QStringList RecentFiles::Get() const
{
  return QSettings().value(s_key).toStringList();
}

void RecentFiles::Add(const QString& file)
{
  QStringList files = Get();
  files.removeAll(file);
  files.prepend(file);
  QSettings().setValue(s_key, files.first(qMin(files.size(), s_most)));
  _FillMenu();
}

void RecentFiles::_FillMenu()
{
  m_menu.clear();
  const QStringList files = Get();
  m_menu.setEnabled(!files.isEmpty());
  for (const QString& file : files) {
    // An ampersand in a name is no shortcut.
    QAction* const action = m_menu.addAction(QFileInfo(file).fileName().replace('&', "&&"));
    action->setToolTip(file);
    action->setStatusTip(file);
    connect(action, &QAction::triggered, this, [this, file] { Q_EMIT Chosen(file); });
  }
  if (!files.isEmpty()) {
    m_menu.addSeparator();
    connect(m_menu.addAction(tr("&Forget All")), &QAction::triggered, this, [this] {
      QSettings().remove(s_key);
      m_menu.setEnabled(false);
    });
  }
}

}  // namespace viewer
