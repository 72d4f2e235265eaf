#include "support/Stage.h"

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QSettings>
#include <QTest>
#include <algorithm>

#include "zelk/BaseInstance.h"

namespace viewertest {

namespace {

using BasePtr = du::SmartPtr<zelk::BaseInstance>;

constexpr int s_patienceMs = 60'000;

BasePtr GetNext(const BasePtr& from)
{
  BasePtr next;
  from->GetBaseFirstChild(next);
  for (BasePtr above = from; !next && above; above->GetBaseParent(above)) {
    above->GetBaseNextSibling(next);
  }
  return next;
}

}  // namespace

void Stage::SetUp()
{
  QSettings().clear();
  // The pointer of the screen must not point at anything by itself.
  QCursor::setPos(1270, 1015);
  window = std::make_unique<viewer::MainWindow>();
  window->resize(900, 700);
  Show();
}

// Keys go to the active window, and no window manager is there to make it that.
void Stage::Show()
{
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

void Stage::TearDown()
{
  window.reset();
}

void Stage::WaitFor(const std::function<bool()>& isReached, const char* what)
{
  ASSERT_TRUE(QTest::qWaitFor(isReached, s_patienceMs)) << "waited too long for " << what;
}

void Stage::Open(const QStringList& files)
{
  window->Open(files);
  WaitFor([this] { return !window->GetSession().IsReading(); }, "the files");
  WaitForShapes();
}

void Stage::OpenFromAbove(const QStringList& files)
{
  Open(files);
  View().LookFrom(viewer::Direction::Top);
  Settle();
}

void Stage::WaitForShapes()
{
  WaitFor([this] { return window->GetBinding().GetLoadingCount() == 0 && !window->GetModel().IsAtWork(); },
          "the shapes");
  Settle();
}

void Stage::Settle()
{
  // What waits in the event loop comes first: it may ask for a drawing.
  QTest::qWait(30);
  WaitFor(
      [this] {
        const auto views = window->GetViews();
        return window->GetBinding().IsUpToDate()
               && std::all_of(views.begin(), views.end(), [](const auto* view) { return view->IsUpToDate(); });
      },
      "the drawing");
  QTest::qWait(30);
}

du::SmartPtr<zelk::Instance> Stage::Find(const std::string& name)
{
  for (BasePtr instance = window->GetSession().GetWorld()->GetMemTree().GetRootInstance(); instance;
       instance = GetNext(instance)) {
    auto found = du::DynamicCast<memkernel::Instance>(instance);
    if (found && found->GetObjectName().GetView() == name) {
      return found;
    }
  }
  ADD_FAILURE() << "there is no " << name;
  return {};
}

QPoint Stage::PlaceOf(const std::string& name, std::size_t view)
{
  gp_Pnt center;
  const auto instance = Find(name);
  EXPECT_TRUE(instance && window->GetModel().FindCenter(*instance, center)) << name << " is not drawn";
  return View(view).Project(center);
}

QColor Stage::ColorAt(const QPoint& place, std::size_t view)
{
  const QImage image = View(view).Capture();
  EXPECT_TRUE(image.rect().contains(place)) << place.x() << ", " << place.y();
  return image.pixelColor(place);
}

std::set<std::string> Stage::GetSelected(unsigned int list)
{
  std::set<du::SmartPtr<zelk::Instance>> instances;
  window->GetSession().GetWorld()->selectionManager->GetSelectedInstances(list, instances, zelk::ExpandRuleInstances);
  std::set<std::string> names;
  for (const auto& instance : instances) {
    names.emplace(instance->GetObjectName().GetView());
  }
  return names;
}

void Stage::Select(const std::string& name)
{
  window->GetSession().GetWorld()->GetMemSelectionManager().ApplyInstances(
      zelk::SelectionManager::SelectionList, {Find(name)}, zelk::SelectionManager::OperationSet);
  Settle();
}

bool Stage::IsVisible(const std::string& name)
{
  const auto shape = window->GetSession().GetScene()->FindShapeInstance(Find(name).Get());
  return shape && shape->IsVisible();
}

QAction* Stage::FindAction(const QString& text)
{
  QList<QAction*> actions = window->menuBar()->actions();
  while (!actions.isEmpty()) {
    QAction* const action = actions.takeFirst();
    if (action->text().remove('&') == text) {
      return action;
    }
    if (const QMenu* const menu = action->menu()) {
      actions += menu->actions();
    }
  }
  ADD_FAILURE() << "there is no action " << text.toStdString();
  return nullptr;
}

QTreeView& Stage::Rows()
{
  return window->GetStructure().GetPanel().GetView();
}

std::string Stage::ReadRows(const QModelIndex& parent)
{
  const qthost::GuiTreeItemModel& model = window->GetStructure().GetModel();
  std::string rows;
  for (int i = 0; i < model.rowCount(parent); ++i) {
    const QModelIndex row = model.index(i, qthost::GuiTreeItemModel::NameColumn, parent);
    EXPECT_EQ(model.FindIndex(model.GetInstance(row).Get()), row) << row.data().toString().toStdString();
    const std::string below = ReadRows(row);
    rows += (i > 0 ? " " : "") + row.data().toString().toStdString() + (below.empty() ? "" : '[' + below + ']');
  }
  return rows;
}

QModelIndex Stage::RowOf(const std::string& name)
{
  return window->GetStructure().GetModel().FindIndex(Find(name).Get());
}

void Stage::ClickRow(const std::string& name, int column, Qt::KeyboardModifiers modifiers)
{
  const QModelIndex row = RowOf(name);
  ASSERT_TRUE(row.isValid()) << name << " has no row";
  const QModelIndex cell = row.siblingAtColumn(column);
  Rows().scrollTo(row);
  QTest::mouseClick(Rows().viewport(), Qt::LeftButton, modifiers, Rows().visualRect(cell).center());
  Settle();
}

void Stage::Click(const QPoint& place, Qt::KeyboardModifiers modifiers, std::size_t view)
{
  QTest::mouseClick(&View(view), Qt::LeftButton, modifiers, place);
  Settle();
}

// QTest would leave it to the screen whether the pointer has moved.
void Stage::Move(QWidget& widget, const QPoint& place, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
{
  QMouseEvent event(QEvent::MouseMove, place, widget.mapToGlobal(place), Qt::NoButton, buttons, modifiers);
  QApplication::sendEvent(&widget, &event);
  Settle();
}

void Stage::Drag(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers modifiers)
{
  QTest::mousePress(&View(), Qt::LeftButton, modifiers, from);
  Move(View(), to, Qt::LeftButton, modifiers);
  QTest::mouseRelease(&View(), Qt::LeftButton, modifiers, to);
  Settle();
}

void Stage::Press(QKeyCombination keys)
{
  QTest::keyClick(&View(), keys.key(), keys.keyboardModifiers());
  Settle();
}

}  // namespace viewertest
