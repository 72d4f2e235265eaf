#include "StructureDock.h"

#include <QAction>
#include <QEvent>
#include <QTreeView>
#include <array>
#include <string_view>
#include <vector>

namespace viewer {

namespace {

using Command = qthost::GuiTreePanel::Command;

constexpr const char* s_group = "structure";
constexpr const char* s_bodiesKey = "showsBodies";
constexpr const char* s_collapseKey = "collapsesInstances";
constexpr const char* s_columnsKey = "columns";

/// A property of what is read from a file, and its entry in the menu.
struct Column {
  const char* property;
  const char* text;
};

constexpr std::array s_columns{
    Column{"Product Name", QT_TRANSLATE_NOOP("viewer::StructureDock", "&Product Name")},
    Column{"Color", QT_TRANSLATE_NOOP("viewer::StructureDock", "&Color")},
    Column{"Layer", QT_TRANSLATE_NOOP("viewer::StructureDock", "&Layer")},
    Column{"Source File", QT_TRANSLATE_NOOP("viewer::StructureDock", "&Source File")},
};

}  // namespace

/// The topmost row stands above all files: it is a row that a filter may find, and nothing is spared for its sake.
class StructureDock::State final : public guitree::StructureTreeState {
public:
  explicit State(guitree::GuiTree& tree) : StructureTreeState(tree, true) {}
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() override { _DetachStatusLookups(); }

  [[nodiscard]] bool GetDisplayRoot() override { return true; }
};

StructureDock::StructureDock(Session& session, SceneBinding& binding, QWidget* parent)
    : QDockWidget(tr("Structure"), parent),
      m_session(session),
      m_binding(binding),
      m_panel(std::make_unique<qthost::GuiTreePanel>(m_model)),
      m_gui(du::MakeSmart<guitree::GuiTree>(session.GetWorld()->CreateManagedObject()))
{
  setObjectName("structure");
  setWidget(m_panel.get());
  m_panel->SetVisibilityHook([this](const qthost::GuiTreePanel::Instances& instances, bool isVisible) {
    return _SetVisible(instances, isVisible);
  });
  _FollowPointer();
  _MakeFindable();
  _MakeColumnMenu();
  connect(&m_panel->GetAction(Command::ShowBodies), &QAction::toggled, &binding, &SceneBinding::SetPickingBodies);
  connect(&session, &Session::Opened, this, &StructureDock::_Show);
  _Open();
}

void StructureDock::_Open()
{
  m_model.SetPanel(m_gui.Get());
  m_gui->SetGuiInterface(&m_model);
  m_gui->SetTreeState(du::MakeSmart<State>(*m_gui));
  m_gui->Initialise(m_session.GetWorld());
  m_session.SetFollower(m_model.GetSceneManagerObserver());
  // Otherwise an edit would wait for as long as a filter reads the tree.
  m_session.GetWorld()->GetMemTree().SetEditGate([this] { m_panel->GiveWayToEdit(); });
}

// A filter that does not follow changes would leave a new file out.
void StructureDock::_Show(const QString& file)
{
  if (m_gui->GetTreeState()->IsFiltered()) {
    m_panel->FilterAgain();
    return;
  }
  m_panel->GetView().expand(m_model.FindIndex(m_session.GetRoot().Get()));
  m_panel->GetView().expand(m_model.FindIndex(m_session.FindFile(file).Get()));
}

StructureDock::~StructureDock()
{
  m_session.GetWorld()->GetMemTree().SetEditGate({});
  m_session.SetFollower({});
  m_gui->Close();
  m_model.SetPanel(nullptr);
}

void StructureDock::_FollowPointer()
{
  QTreeView& view = m_panel->GetView();
  view.setMouseTracking(true);
  view.viewport()->installEventFilter(this);
  connect(&view, &QAbstractItemView::entered, this, [this](const QModelIndex& index) {
    m_binding.PointAt(du::DynamicCast<memkernel::Instance>(m_model.GetInstance(index)));
  });
  connect(&view, &QAbstractItemView::viewportEntered, this, [this] { m_binding.PointAt({}); });
}

// From anywhere in the window, also while the dock is closed.
void StructureDock::_MakeFindable()
{
  QAction& find = m_panel->GetAction(Command::FocusFilter);
  find.setShortcutContext(Qt::WindowShortcut);
  connect(&find, &QAction::triggered, this, [this, &find] {
    if (!isVisible()) {
      show();
      find.trigger();
    }
  });
}

void StructureDock::_MakeColumnMenu()
{
  m_columnMenu = new QMenu(tr("&Columns"), this);
  for (const Column& column : s_columns) {
    QAction* const action = m_columnMenu->addAction(tr(column.text));
    action->setData(QString::fromLatin1(column.property));
    action->setCheckable(true);
    connect(action, &QAction::toggled, this, &StructureDock::_ShowColumns);
  }
}

void StructureDock::_ShowColumns()
{
  std::vector<du::DualSymbol> columns;
  for (const QString& property : _GetShownColumns()) {
    columns.emplace_back(du::Symbol(), du::Symbol(std::string_view(property.toStdString())));
  }
  m_model.SetPropertyColumns(columns);
}

QStringList StructureDock::_GetShownColumns() const
{
  QStringList columns;
  for (const QAction* action : m_columnMenu->actions()) {
    if (action->isChecked()) {
      columns << action->data().toString();
    }
  }
  return columns;
}

bool StructureDock::eventFilter(QObject* watched, QEvent* event)
{
  if (event->type() == QEvent::Leave && watched == m_panel->GetView().viewport()) {
    m_binding.PointAt({});
  }
  return QDockWidget::eventFilter(watched, event);
}

bool StructureDock::_SetVisible(const qthost::GuiTreePanel::Instances& instances, bool isVisible)
{
  std::set<du::SmartPtr<zelk::Instance>> found;
  for (const auto& instance : instances) {
    if (auto own = du::DynamicCast<zelk::Instance>(instance)) {
      found.insert(std::move(own));
    }
  }
  return m_binding.SetVisible(found, isVisible);
}

void StructureDock::SaveSettings(QSettings& settings) const
{
  settings.beginGroup(s_group);
  m_panel->SaveSettings(settings);
  settings.setValue(s_columnsKey, _GetShownColumns());
  settings.setValue(s_bodiesKey, m_panel->GetAction(Command::ShowBodies).isChecked());
  settings.setValue(s_collapseKey, m_panel->GetAction(Command::CollapseInstances).isChecked());
  settings.endGroup();
}

void StructureDock::RestoreSettings(QSettings& settings)
{
  settings.beginGroup(s_group);
  // The panel may sort by one of them.
  const QStringList columns = settings.value(s_columnsKey).toStringList();
  for (QAction* const action : m_columnMenu->actions()) {
    action->setChecked(columns.contains(action->data().toString()));
  }
  m_panel->RestoreSettings(settings);
  m_panel->GetAction(Command::ShowBodies).setChecked(settings.value(s_bodiesKey, true).toBool());
  m_panel->GetAction(Command::CollapseInstances).setChecked(settings.value(s_collapseKey, false).toBool());
  settings.endGroup();
  m_binding.SetPickingBodies(m_panel->GetAction(Command::ShowBodies).isChecked());
}

}  // namespace viewer
