#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QSplitter>
#include <QStringList>
#include <QTimer>
#include <memory>
#include <vector>

#include "MessageBar.h"
#include "ModelScene.h"
#include "ModelView.h"
#include "ReadingBar.h"
#include "RecentFiles.h"
#include "SceneBinding.h"
#include "Session.h"
#include "StructureDock.h"

namespace viewer {

/// The window of the application: views of everything that is open, menus, messages and a status bar. What was set is
/// remembered in the settings of the application.
class MainWindow final : public QMainWindow {
  Q_OBJECT

public:
  /// Throws `std::runtime_error` where nothing can be drawn in 3D.
  MainWindow();
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;
  ~MainWindow() override;

  void Open(const QStringList& files);

  [[nodiscard]] Session& GetSession() noexcept { return m_session; }
  [[nodiscard]] ModelScene& GetModel() noexcept { return m_model; }
  [[nodiscard]] SceneBinding& GetBinding() noexcept { return m_binding; }
  [[nodiscard]] StructureDock& GetStructure() noexcept { return *m_structure; }
  [[nodiscard]] const MessageBar& GetMessages() const noexcept { return *m_messages; }
  /// One or two, the first one first.
  [[nodiscard]] std::vector<ModelView*> GetViews() const;

protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

private:
  struct View {
    ModelView* widget;
    du::SmartPtr<memkernel::ShapeView> view;
  };

  void _MakeMenus();
  void _MakeFileMenu();
  void _MakeSelectionMenu();
  void _MakeViewMenu();
  QAction* _AddAction(QMenu& menu, const QString& text, const QKeySequence& key, const std::function<void()>& act);
  void _ConnectSession();
  void _ChooseFiles();
  void _AddView();
  void _SetTwoViews(bool on);
  void _SetDark(bool on);
  [[nodiscard]] ModelView& _GetActiveView() const;
  void _UpdateActions();
  /// Once for all that changes in a turn of the event loop: to count costs as much as there is to count.
  void _CountSoon() { m_countsDue.start(); }
  void _UpdateCounts();
  void _Restore();
  void _Store() const;

  Session m_session;
  ModelScene m_model;
  SceneBinding m_binding;
  std::unique_ptr<StructureDock> m_structure;
  QSplitter* const m_splitter;
  MessageBar* const m_messages;
  ReadingBar* const m_reading;
  QLabel* const m_counts;
  RecentFiles* m_recent = nullptr;
  QAction* m_dark = nullptr;
  QAction* m_twoViews = nullptr;
  QAction* m_closeAll = nullptr;
  QList<QAction*> m_needSelection;
  QList<QAction*> m_needContent;
  std::vector<View> m_views;
  QTimer m_countsDue;
};

}  // namespace viewer
