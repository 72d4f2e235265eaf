// The panel of the Qt host in a window: a filter from the key that starts it until its rows are painted, all of them
// expanded, and how long the window's thread stands still for it. Beside it a QSortFilterProxyModel in a view of the
// same size.

#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTreeView>

#include "guitree/StructureTreeState.h"
#include "memkernel/World.h"
#include "peers/QtModels.h"
#include "qthost/GuiTreeItemModel.h"
#include "qthost/GuiTreePanel.h"
#include "qthost/LoopDriver.h"
#include "support/FilterNames.h"
#include "support/Measure.h"
#include "support/Shapes.h"
#include "support/Walk.h"
#include "zelk/Instance.h"

namespace bench {
namespace {

constexpr double s_milliseconds = 1e3;
constexpr QSize s_window(600, 900);

double GetThreadSeconds()
{
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Knows the longest time that one event has taken, those within it included: as long the window does not answer.
class Application : public QApplication {
public:
  Application() : QApplication(s_argc, s_argv) {}

  bool notify(QObject* receiver, QEvent* event) override
  {
    if (m_isAtWork) {
      return QApplication::notify(receiver, event);
    }
    m_isAtWork = true;
    const double start = GetThreadSeconds();
    const bool isTaken = QApplication::notify(receiver, event);
    m_longest = std::max(m_longest, GetThreadSeconds() - start);
    m_isAtWork = false;
    return isTaken;
  }
  [[nodiscard]] double TakeLongest() { return std::exchange(m_longest, 0.0); }

private:
  static inline int s_argc = 1;
  static inline char s_name[] = "bench";
  static inline char* s_argv[] = {s_name, nullptr};

  bool m_isAtWork = false;
  double m_longest = 0;
};

void Paint(QTreeView& view)
{
  QCoreApplication::processEvents();
  view.viewport()->repaint();
}

/// By a clock on the wall: a filter has two threads at work, and its user waits for the later one.
double TimeOnTheWall(const std::function<void()>& work)
{
  TidyHeap();
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double TimeToPaint(QTreeView& view, const std::function<void()>& work)
{
  return TimeOnTheWall([&] {
    work();
    Paint(view);
  });
}

double ScrollToEnd(QTreeView& view)
{
  return TimeToPaint(view, [&] { view.scrollToBottom(); });
}

/// The rows that a view would show, and whether it has laid each of them out.
std::size_t CountShownRows(const QTreeView& view)
{
  std::size_t count = 0;
  for (QModelIndex index = view.model()->index(0, 0); index.isValid(); index = view.indexBelow(index)) {
    ++count;
  }
  return count;
}

std::size_t CountRows(const QAbstractItemModel& model, const QModelIndex& parent = {})
{
  std::size_t count = 0;
  for (int row = 0; row < model.rowCount(parent); ++row) {
    count += 1 + CountRows(model, model.index(row, 0, parent));
  }
  return count;
}

/// The root is an assembly like any other.
class State final : public guitree::StructureTreeState {
public:
  explicit State(guitree::GuiTree& tree) : StructureTreeState(tree, true) {}

  [[nodiscard]] bool GetDisplayRoot() override { return true; }
};

/// A panel over a world with one worker, in a window. One a process, since the world is installed for it.
class Window {
public:
  explicit Window(const du::SmartPtr<memkernel::Tree>& tree)
  {
    m_world->tree = tree;
    m_world->InstallForProcess();
    m_world->GetLoop().SetWakeUp(m_driver.MakeWakeUp());
    m_model.SetPanel(m_gui.Get());
    m_gui->SetGuiInterface(&m_model);
    m_gui->SetTreeState(m_state);
    m_panel.resize(s_window);
    m_panel.show();
    QCoreApplication::processEvents();
    m_gui->Initialise(m_world);
    Settle();
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window()
  {
    m_panel.hide();
    m_gui->Reset();
    m_gui->Close();
    m_world->GetLoop().SetWakeUp({});
    m_world->Shutdown();
  }

  [[nodiscard]] QTreeView& GetView() const { return m_panel.GetView(); }
  /// Enter filters at once, without the pause that typing allows for.
  void FilterByKey(const QString& text)
  {
    auto* const line = m_panel.findChild<QLineEdit*>(QStringLiteral("filterLine"));
    line->setText(text);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(line, &press);
  }
  /// Until no filter is at work and nothing is left to be painted.
  void Settle()
  {
    while (QCoreApplication::processEvents(QEventLoop::AllEvents), m_model.IsCalculating()) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    Paint(GetView());
  }
  [[nodiscard]] std::size_t GetRowCount() const { return m_model.GetRowCount(); }
  /// As a pick in a scene does, until it is painted.
  void SelectInKernel(const std::vector<du::SmartPtr<zelk::Instance>>& instances)
  {
    m_world->GetMemSelectionManager().ApplyInstances(zelk::SelectionManager::SelectionList, instances,
                                                     zelk::SelectionManager::OperationSet);
    Settle();
  }
  /// Opens all branches.
  void Expand()
  {
    QTreeView& view = GetView();
    view.setCurrentIndex(view.model()->index(0, 0));
    m_panel.GetAction(qthost::GuiTreePanel::Command::ExpandBranch).trigger();
    Paint(view);
  }

private:
  const du::SmartPtr<memkernel::World> m_world = du::MakeSmart<memkernel::World>(1U);
  qthost::LoopDriver m_driver{[this] { m_world->GetLoop().RunDue(); }};
  qthost::GuiTreeItemModel m_model;
  const du::SmartPtr<guitree::GuiTree> m_gui = du::MakeSmart<guitree::GuiTree>(m_world->CreateManagedObject());
  const du::SmartPtr<State> m_state = du::MakeSmart<State>(*m_gui);
  qthost::GuiTreePanel m_panel{m_model};
};

struct FilterTimes {
  double whole = 0;
  double scroll = 0;
};

/// Opens all rows with children of a view that has just been given its model, and lays nothing out for each of them.
void ExpandBranches(QTreeView& view, const QModelIndex& parent = {})
{
  for (int row = 0; row < view.model()->rowCount(parent); ++row) {
    const QModelIndex index = view.model()->index(row, 0, parent);
    if (view.model()->rowCount(index) > 0) {
      view.setExpanded(index, true);
      ExpandBranches(view, index);
    }
  }
}

/// A fresh proxy is given to the view, expanded and painted.
FilterTimes FilterByFreshProxy(QTreeView& view, QAbstractItemModel& rows, const QString& text, std::size_t expected)
{
  QSortFilterProxyModel proxy;
  proxy.setRecursiveFilteringEnabled(true);
  proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
  FilterTimes times;
  times.whole = TimeToPaint(view, [&] {
    proxy.setFilterFixedString(text);
    proxy.setSourceModel(&rows);
    view.setModel(&proxy);
    view.expandAll();
  });
  Require(CountShownRows(view) == expected, "the proxy shows the same rows");
  times.scroll = ScrollToEnd(view);
  return times;
}

/// In a view that shows nothing yet, or `shown` with all branches open, as the panel's does.
FilterTimes FilterInView(QAbstractItemModel* shown, QAbstractItemModel& rows, const QString& text, std::size_t expected)
{
  QTreeView view;
  view.setUniformRowHeights(true);
  view.resize(s_window);
  if (shown) {
    view.setModel(shown);
    ExpandBranches(view);
  }
  view.show();
  Paint(view);
  return FilterByFreshProxy(view, rows, text, expected);
}

/// The proxy stands under the expanded view when the filter is set.
double FilterUnderExpandedView(QAbstractItemModel& rows, const QString& text, std::size_t expected)
{
  QSortFilterProxyModel proxy;
  proxy.setRecursiveFilteringEnabled(true);
  proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
  proxy.setSourceModel(&rows);
  QTreeView view;
  view.setUniformRowHeights(true);
  view.resize(s_window);
  view.setModel(&proxy);
  view.expandAll();
  view.show();
  Paint(view);
  const double seconds = TimeToPaint(view, [&] { proxy.setFilterFixedString(text); });
  // It keeps ancestors that have lost their last match, and closes some branches.
  Require(CountRows(proxy) >= expected, "the proxy has the same rows");
  return seconds;
}

// A proxy under an expanded view takes the square of the rows, and more with each row that is left.
bool IsBearableUnderExpandedView(std::size_t rows, std::size_t left)
{
  return rows <= 20'000 && left <= 1000;
}

Figures Filter(std::size_t rows, const FilterText& filter)
{
  Application application;
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, rows);
  GiveFilterNames(*tree);
  const std::unique_ptr<QAbstractItemModel> lean = MakeLeanModel(*tree);
  const QString text = QString::fromStdString(filter.text);
  Window window(tree);
  QTreeView& view = window.GetView();
  return RunRounds(rows, [&](Figures& figures) {
    static_cast<void>(application.TakeLongest());
    figures["expand_ms"] = Time([&] { window.Expand(); }) * s_milliseconds;
    Require(CountShownRows(view) == rows, "the view shows everything");
    static_cast<void>(application.TakeLongest());
    const double seconds = TimeOnTheWall([&] {
      window.FilterByKey(text);
      window.Settle();
    });
    figures["block_ms"] = application.TakeLongest() * s_milliseconds;
    const std::size_t expected = window.GetRowCount();
    Require(expected > 1 && expected < rows && CountShownRows(view) == expected, "the view shows what is left");
    figures["rows"] = static_cast<double>(expected);
    const double scroll = ScrollToEnd(view);
    figures["scroll_ms"] = scroll * s_milliseconds;
    const FilterTimes proxy = FilterInView(lean.get(), *lean, text, expected);
    figures["x_proxy"] = seconds / proxy.whole;
    figures["proxy_ms"] = proxy.whole * s_milliseconds;
    figures["proxy_scroll_ms"] = proxy.scroll * s_milliseconds;
    figures["x_fresh_view"] = seconds / FilterInView(nullptr, *lean, text, expected).whole;
    if (IsBearableUnderExpandedView(rows, expected)) {
      const double under = FilterUnderExpandedView(*lean, text, expected);
      figures["x_expanded_proxy"] = seconds / under;
      figures["expanded_proxy_ms"] = under * s_milliseconds;
    }
    static_cast<void>(application.TakeLongest());
    window.FilterByKey({});
    window.Settle();
    Require(window.GetRowCount() == rows, "all rows are back");
    figures["back_block_ms"] = application.TakeLongest() * s_milliseconds;
    return seconds;
  });
}

/// A tenth of all rows is selected in the kernel, each `step` rows behind the one before; then a click selects one.
Figures Select(std::size_t rows, std::size_t step)
{
  const Application application;
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, rows);
  std::vector<du::SmartPtr<zelk::Instance>> instances;
  std::size_t number = 0;
  WalkDepthFirst(*tree, [&](const zelk::BaseInstance& instance, std::size_t /*depth*/) {
    if (number % step == 0 && number / step < rows / 10) {
      instances.emplace_back(const_cast<zelk::Instance*>(zelk::AsInstance(&instance)));
    }
    ++number;
  });
  Window window(tree);
  window.Expand();
  QTreeView& view = window.GetView();
  return RunRounds(rows, [&](Figures& figures) {
    const double seconds = Time([&] { window.SelectInKernel(instances); });
    figures["ranges"] = static_cast<double>(view.selectionModel()->selection().size());
    figures["paint_ms"] = TimeToPaint(view, [] {}) * s_milliseconds;
    figures["click_ms"] =
        TimeToPaint(view,
                    [&] {
                      view.selectionModel()->select(view.model()->index(0, 0),
                                                    QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
                    })
        * s_milliseconds;
    Require(view.selectionModel()->selectedRows().size() == 1, "one row is selected");
    window.SelectInKernel({});
    return seconds;
  });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  for (const bench::FilterText& text : bench::GetFilterTexts()) {
    if (text.name == "1%" || text.name == "30%") {
      bench::Register("QtPanelFilter/" + text.name, {10'000, 20'000, 100'000, 1'000'000},
                      [&text](std::size_t rows) { return bench::Filter(rows, text); });
    }
  }
  for (const auto& [name, step] : {std::pair("neighbours", 1), std::pair("scattered", 10)}) {
    bench::Register(std::string("QtPanelSelect/") + name, {10'000, 100'000, 1'000'000},
                    [step = step](std::size_t rows) { return bench::Select(rows, static_cast<std::size_t>(step)); });
  }
  return bench::RunAll(argc, argv);
}
