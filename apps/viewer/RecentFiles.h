#pragma once

#include <QMenu>
#include <QObject>
#include <QStringList>

namespace viewer {

/// The files that were opened last, newest first, remembered in the settings of the application, and a menu of them.
class RecentFiles final : public QObject {
  Q_OBJECT

public:
  static constexpr qsizetype s_most = 10;

  /// Fills `menu` whenever it is about to be shown. Both live in the main window.
  explicit RecentFiles(QMenu& menu, QObject* parent = nullptr);

  void Add(const QString& file);
  [[nodiscard]] QStringList Get() const;

Q_SIGNALS:
  void Chosen(const QString& file);

private:
  void _FillMenu();

  QMenu& m_menu;
};

}  // namespace viewer
