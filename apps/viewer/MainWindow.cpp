#include "MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QSettings>
#include <QStatusBar>
#include <QVBoxLayout>

namespace viewer {

namespace {

constexpr const char* s_geometryKey = "window/geometry";
constexpr const char* s_stateKey = "window/state";
constexpr const char* s_darkKey = "view/dark";
constexpr const char* s_twoViewsKey = "view/two";
constexpr const char* s_splitKey = "view/split";
constexpr int s_structureWidth = 380;
constexpr const char* s_folderKey = "open/folder";

struct NamedDirection {
  const char* name;
  Direction direction;
};

constexpr NamedDirection s_directions[] = {
    {QT_TRANSLATE_NOOP("viewer::MainWindow", "&Front"), Direction::Front},
    {QT_TRANSLATE_NOOP("viewer::MainWindow", "&Back"), Direction::Back},
    {QT_TRANSLATE_NOOP("viewer::MainWindow", "&Left"), Direction::Left},
    {QT_TRANSLATE_NOOP("viewer::MainWindow", "&Right"), Direction::Right},
    {QT_TRANSLATE_NOOP("viewer::MainWindow", "&Top"), Direction::Top},
    {QT_TRANSLATE_NOOP("viewer::MainWindow", "B&ottom"), Direction::Bottom},
    {QT_TRANSLATE_NOOP("viewer::MainWindow", "&Corner"), Direction::Corner},
};

bool IsPaletteDark()
{
  const QPalette palette = QApplication::palette();
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QStringList GetLocalFiles(const QMimeData& data)
{
  QStringList files;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) {
      files += url.toLocalFile();
    }
  }
  return files;
}

}  // namespace

MainWindow::MainWindow()
    : m_binding(m_session, m_model),
      m_structure(std::make_unique<StructureDock>(m_session, m_binding)),
      m_splitter(new QSplitter(Qt::Horizontal)),
      m_messages(new MessageBar()),
      m_reading(new ReadingBar()),
      m_counts(new QLabel())
{
  setAcceptDrops(true);
  auto* const content = new QWidget();
  auto* const column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(m_messages);
  column->addWidget(m_splitter, 1);
  setCentralWidget(content);
  statusBar()->addPermanentWidget(m_reading);
  statusBar()->addPermanentWidget(m_counts);
  m_counts->setObjectName("counts");
  m_countsDue.setSingleShot(true);
  connect(&m_countsDue, &QTimer::timeout, this, &MainWindow::_UpdateCounts);
  m_splitter->setChildrenCollapsible(false);
  addDockWidget(Qt::LeftDockWidgetArea, m_structure.get());
  resizeDocks({m_structure.get()}, {s_structureWidth}, Qt::Horizontal);
  _AddView();
  _MakeMenus();
  _ConnectSession();
  _Restore();
  _UpdateActions();
  _UpdateCounts();
}

// The panel and the views go before what they look at.
MainWindow::~MainWindow()
{
  m_structure.reset();
  delete takeCentralWidget();
}

void MainWindow::_ConnectSession()
{
  connect(&m_session, &Session::ReadingBegan, m_reading, &ReadingBar::Begin);
  connect(&m_session, &Session::ReadingProgressed, m_reading, &ReadingBar::SetProgress);
  connect(&m_session, &Session::ReadingEnded, m_reading, &ReadingBar::End);
  connect(m_reading, &ReadingBar::CancelRequested, &m_session, &Session::CancelReading);
  connect(&m_session, &Session::Failed, m_messages, &MessageBar::Add);
  connect(&m_session, &Session::Warned, this, [this](const QStringList& messages) {
    for (const QString& message : messages) {
      m_messages->Add(message);
    }
  });
  connect(&m_session, &Session::Opened, this, [this](const QString& file) {
    m_recent->Add(file);
    _UpdateActions();
  });
  connect(&m_session, &Session::Closed, this, &MainWindow::_UpdateActions);
  connect(&m_session, &Session::Closed, this, &MainWindow::_CountSoon);
  connect(&m_model, &ModelScene::ContentChanged, this, &MainWindow::_CountSoon);
  connect(&m_binding, &SceneBinding::SelectionChanged, this, &MainWindow::_UpdateActions);
  connect(&m_binding, &SceneBinding::SelectionChanged, this, &MainWindow::_CountSoon);
  connect(&m_binding, &SceneBinding::PointedAt, this, [this](const QString& name) { statusBar()->showMessage(name); });
}

void MainWindow::_MakeMenus()
{
  _MakeFileMenu();
  _MakeSelectionMenu();
  _MakeViewMenu();
  QMenu& help = *menuBar()->addMenu(tr("&Help"));
  _AddAction(help, tr("&About guitree-viewer"), {}, [this] {
    QMessageBox::about(this, tr("About guitree-viewer"),
                       tr("guitree-viewer %1 shows STEP assemblies with their structure beside them.")
                           .arg(QApplication::applicationVersion()));
  });
}

QAction* MainWindow::_AddAction(QMenu& menu, const QString& text, const QKeySequence& key,
                                const std::function<void()>& act)
{
  QAction* const action = menu.addAction(text);
  action->setShortcut(key);
  connect(action, &QAction::triggered, this, act);
  return action;
}

void MainWindow::_MakeFileMenu()
{
  QMenu& menu = *menuBar()->addMenu(tr("&File"));
  _AddAction(menu, tr("&Open..."), QKeySequence::Open, [this] { _ChooseFiles(); });
  m_recent = new RecentFiles(*menu.addMenu(tr("Open &Recent")), this);
  connect(m_recent, &RecentFiles::Chosen, this, [this](const QString& file) { Open({file}); });
  m_closeAll = _AddAction(menu, tr("&Close All"), QKeySequence::Close, [this] { m_session.CloseAll(); });
  menu.addSeparator();
  _AddAction(menu, tr("&Quit"), QKeySequence::Quit, [this] { close(); });
}

void MainWindow::_MakeSelectionMenu()
{
  QMenu& menu = *menuBar()->addMenu(tr("&Selection"));
  QAction* const selectNothing =
      _AddAction(menu, tr("Select &Nothing"), Qt::Key_Escape, [this] { m_binding.SelectNothing(); });
  // In the panel the key clears the filter.
  selectNothing->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  m_splitter->addAction(selectNothing);
  m_needSelection += selectNothing;
  menu.addSeparator();
  m_needSelection += _AddAction(menu, tr("&Hide"), Qt::CTRL | Qt::Key_H, [this] { m_binding.HideSelected(); });
  m_needSelection += _AddAction(menu, tr("&Show"), Qt::CTRL | Qt::Key_J, [this] { m_binding.ShowSelected(); });
  m_needSelection +=
      _AddAction(menu, tr("Show &Only This"), Qt::CTRL | Qt::Key_I, [this] { m_binding.ShowOnlySelected(); });
  m_needContent += _AddAction(menu, tr("Show &All"), Qt::CTRL | Qt::SHIFT | Qt::Key_H, [this] { m_binding.ShowAll(); });
}

void MainWindow::_MakeViewMenu()
{
  QMenu& menu = *menuBar()->addMenu(tr("&View"));
  _AddAction(menu, tr("Fit &All"), Qt::CTRL | Qt::Key_0, [this] { _GetActiveView().FitAll(); });
  QMenu& from = *menu.addMenu(tr("&Look From"));
  int number = 0;
  for (const NamedDirection& named : s_directions) {
    const QKeySequence key(QString("Ctrl+%1").arg(++number));
    _AddAction(from, tr(named.name), key, [this, &named] { _GetActiveView().LookFrom(named.direction); });
  }
  menu.addSeparator();
  m_twoViews = menu.addAction(tr("&Two Views"));
  m_twoViews->setCheckable(true);
  m_twoViews->setShortcut(Qt::CTRL | Qt::Key_T);
  connect(m_twoViews, &QAction::toggled, this, &MainWindow::_SetTwoViews);
  m_dark = menu.addAction(tr("&Dark Background"));
  m_dark->setCheckable(true);
  m_dark->setShortcut(Qt::CTRL | Qt::Key_D);
  connect(m_dark, &QAction::toggled, this, &MainWindow::_SetDark);
  menu.addSeparator();
  menu.addAction(m_structure->toggleViewAction());
  menu.addMenu(&m_structure->GetColumnMenu());
  menu.addAction(&m_structure->GetPanel().GetAction(qthost::GuiTreePanel::Command::FocusFilter));
  menu.addAction(&m_structure->GetPanel().GetAction(qthost::GuiTreePanel::Command::ShowBodies));
  menu.addAction(&m_structure->GetPanel().GetAction(qthost::GuiTreePanel::Command::CollapseInstances));
}

void MainWindow::Open(const QStringList& files)
{
  if (!m_session.IsReading()) {
    m_messages->Clear();
  }
  m_session.Open(files);
}

void MainWindow::_ChooseFiles()
{
  QSettings settings;
  const QStringList files =
      QFileDialog::getOpenFileNames(this, tr("Open STEP Files"), settings.value(s_folderKey).toString(),
                                    tr("STEP files (*.stp *.step *.p21 *.STP *.STEP *.P21);;All files (*)"));
  if (!files.isEmpty()) {
    settings.setValue(s_folderKey, QFileInfo(files.first()).absolutePath());
    Open(files);
  }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
  if (event->mimeData()->hasUrls() && !GetLocalFiles(*event->mimeData()).isEmpty()) {
    event->acceptProposedAction();
  }
}

void MainWindow::dropEvent(QDropEvent* event)
{
  Open(GetLocalFiles(*event->mimeData()));
  event->acceptProposedAction();
}

void MainWindow::_AddView()
{
  auto* const widget = new ModelView(m_model, m_splitter);
  const du::SmartPtr<memkernel::ShapeView> view = m_session.AddView();
  m_views.push_back({widget, view});
  m_splitter->addWidget(widget);
  m_binding.Follow(*widget);
  connect(widget, &ModelView::FocusGained, this, [this, view] { m_session.ActivateView(view); });
}

void MainWindow::_SetTwoViews(bool on)
{
  if (on && m_views.size() == 1) {
    _AddView();
    m_views.back().widget->SetDark(m_dark->isChecked());
    const int half = m_splitter->width() / 2;
    m_splitter->setSizes({half, half});
  } else if (!on && m_views.size() > 1) {
    const View second = m_views.back();
    m_views.pop_back();
    m_session.RemoveView(second.view);
    delete second.widget;
  }
}

void MainWindow::_SetDark(bool on)
{
  for (const View& view : m_views) {
    view.widget->SetDark(on);
  }
}

ModelView& MainWindow::_GetActiveView() const
{
  for (const View& view : m_views) {
    if (view.view == m_session.GetActiveView()) {
      return *view.widget;
    }
  }
  return *m_views.front().widget;
}

std::vector<ModelView*> MainWindow::GetViews() const
{
  std::vector<ModelView*> widgets;
  for (const View& view : m_views) {
    widgets.push_back(view.widget);
  }
  return widgets;
}

void MainWindow::_UpdateActions()
{
  const QStringList files = m_session.GetOpenFiles();
  const bool hasSelection = m_binding.GetSelectedCount() > 0;
  for (QAction* const action : m_needSelection) {
    action->setEnabled(hasSelection);
  }
  for (QAction* const action : m_needContent) {
    action->setEnabled(!files.isEmpty());
  }
  m_closeAll->setEnabled(!files.isEmpty());
  const QString title =
      files.size() == 1 ? QFileInfo(files.front()).fileName() : tr("%n files", nullptr, static_cast<int>(files.size()));
  setWindowTitle(files.isEmpty() ? tr("guitree-viewer") : tr("%1 - guitree-viewer").arg(title));
}

void MainWindow::_UpdateCounts()
{
  const std::size_t all = m_model.GetDrawnCount();
  const std::size_t selected = m_binding.GetSelectedCount();
  QStringList parts;
  if (const std::size_t loading = m_binding.GetLoadingCount(); loading > 0) {
    parts += tr("%L1 shapes to load").arg(loading);
  }
  if (all > 0) {
    parts += tr("%L1 of %L2 shown").arg(m_model.GetShownCount()).arg(all);
  }
  if (selected > 0) {
    parts += tr("%L1 selected").arg(selected);
  }
  m_counts->setText(m_session.GetOpenFiles().isEmpty() ? tr("Open a STEP file, or drop it here") : parts.join(", "));
}

void MainWindow::_Restore()
{
  QSettings settings;
  if (!restoreGeometry(settings.value(s_geometryKey).toByteArray())) {
    resize(1200, 800);
  }
  restoreState(settings.value(s_stateKey).toByteArray());
  m_dark->setChecked(settings.value(s_darkKey, IsPaletteDark()).toBool());
  m_twoViews->setChecked(settings.value(s_twoViewsKey, false).toBool());
  if (m_twoViews->isChecked()) {
    m_splitter->restoreState(settings.value(s_splitKey).toByteArray());
  }
  m_structure->RestoreSettings(settings);
}

void MainWindow::_Store() const
{
  QSettings settings;
  settings.setValue(s_geometryKey, saveGeometry());
  settings.setValue(s_stateKey, saveState());
  settings.setValue(s_darkKey, m_dark->isChecked());
  settings.setValue(s_twoViewsKey, m_twoViews->isChecked());
  if (m_twoViews->isChecked()) {
    settings.setValue(s_splitKey, m_splitter->saveState());
  }
  m_structure->SaveSettings(settings);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
  _Store();
  m_session.CancelReading();
  QMainWindow::closeEvent(event);
}

}  // namespace viewer
