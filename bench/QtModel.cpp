// The item model of the Qt host: what it adds to a population, what it keeps, and what changes cost in a view.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <QApplication>
#include <QTreeView>

#include "peers/Peers.h"
#include "qthost/GuiTreeItemModel.h"
#include "qthost/SelectionBinding.h"
#include "qthost/TreeViewKeeper.h"
#include "support/Measure.h"
#include "support/Panel.h"
#include "support/Shapes.h"
#include "support/Walk.h"

namespace bench {
namespace {

using Instance = du::SmartPtr<zelk::BaseInstance>;

constexpr double s_milliseconds = 1e3;

std::vector<Instance> ListInstances(const zelk::BaseTree& tree)
{
  std::vector<Instance> list;
  WalkDepthFirst(tree, [&](const zelk::BaseInstance& instance, std::size_t /*depth*/) {
    list.emplace_back(const_cast<zelk::BaseInstance*>(&instance));
  });
  return list;
}

double TimeIdle(const du::SmartPtr<memkernel::Tree>& tree)
{
  IdleHost host;
  Panel panel(tree, host);
  ListInstances(*tree);
  return Time([&] { panel.Populate(); });
}

double TimeLean(const zelk::BaseTree& tree, std::size_t rows)
{
  for (const auto& peer : MakePeers(tree)) {
    if (peer->GetName() == "lean") {
      ListInstances(tree);
      const double seconds = Time([&] { peer->Fill(); });
      Require(peer->ReadAll() == rows, "the lean model has a row of each instance");
      return seconds;
    }
  }
  Require(false, "there is a lean model");
  return 0;
}

Figures Fill(std::size_t rows, Shape shape)
{
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(shape, rows);
  return RunRounds(rows, [&](Figures& figures) {
    qthost::GuiTreeItemModel model;
    Panel panel(tree, model);
    ListInstances(*tree);
    const double before = GetAllocatedBytes();
    const double seconds = Time([&] { panel.Populate(); });
    Require(model.GetRowCount() == rows, "the model has a row of each instance");
    const double idle = TimeIdle(tree);
    figures["bytes_row"] = static_cast<double>(model.GetBytes()) / static_cast<double>(rows);
    figures["bytes_all"] = (GetAllocatedBytes() - before) / static_cast<double>(rows);
    figures["again_ms"] = Time([&] { panel.Populate(); }) * s_milliseconds;
    figures["x_idle_host"] = seconds / idle;
    const double lean = TimeLean(*tree, rows);
    figures["x_lean"] = seconds / lean;
    figures["own_x_lean"] = (seconds - idle) / lean;
    return seconds;
  });
}

/// A view that is seen, with what belongs to it.
struct ShownModel {
  explicit ShownModel(const du::SmartPtr<memkernel::Tree>& tree) : panel(tree, model)
  {
    view.setUniformRowHeights(true);
    view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    view.setModel(&model);
    view.resize(600, 900);
    keeper = std::make_unique<qthost::TreeViewKeeper>(view, model).release();
    binding = std::make_unique<qthost::SelectionBinding>(view, model).release();
    view.show();
    Paint();
  }

  void Paint()
  {
    QCoreApplication::processEvents();
    view.viewport()->repaint();
  }
  [[nodiscard]] double TimeToPaint(const std::function<void()>& work)
  {
    return Time([&] {
             work();
             Paint();
           })
           * s_milliseconds;
  }

  qthost::GuiTreeItemModel model;
  QTreeView view;
  /// The view owns them.
  qthost::TreeViewKeeper* keeper = nullptr;
  qthost::SelectionBinding* binding = nullptr;
  Panel panel;
};

class Application {
public:
  Application() { QApplication::setAttribute(Qt::AA_Use96Dpi); }

private:
  int m_argc = 1;
  char m_name[6] = "bench";
  char* m_argv[2] = {m_name, nullptr};
  const QApplication m_application{m_argc, m_argv};
};

/// A view of a typical assembly with each branch open.
struct ExpandedView {
  explicit ExpandedView(std::size_t rows) : tree(MakeTree(Shape::Typical, rows)), instances(ListInstances(*tree))
  {
    shown.panel.Populate();
    shown.view.expandAll();
    shown.Paint();
  }

  const Application application;
  const du::SmartPtr<memkernel::Tree> tree;
  const std::vector<Instance> instances;
  ShownModel shown{tree};
};

Figures FillView(std::size_t rows)
{
  const Application application;
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, rows);
  return RunRounds(rows, [&](Figures& figures) {
    ShownModel shown(tree);
    ListInstances(*tree);
    const double first = shown.TimeToPaint([&] { shown.panel.Populate(); });
    figures["closed_again_ms"] = shown.TimeToPaint([&] { shown.panel.Populate(); });
    figures["expand_ms"] = shown.TimeToPaint([&] { shown.view.expandAll(); });
    figures["expanded_again_ms"] = shown.TimeToPaint([&] { shown.panel.Populate(); });
    Require(shown.view.isExpanded(shown.model.index(0, 0)), "the population keeps the expansion");
    return first / s_milliseconds;
  });
}

/// `QItemSelectionModel::selectedRows` compares each range with all others.
std::size_t CountRows(const QItemSelection& selection)
{
  std::size_t count = 0;
  for (const QItemSelectionRange& range : selection) {
    count += static_cast<std::size_t>(range.height());
  }
  return count;
}

/// Selects 100,000 rows, or a tenth of all.
Figures Select(std::size_t rows, std::size_t step)
{
  ExpandedView expanded(rows);
  ShownModel& shown = expanded.shown;
  const std::vector<Instance>& instances = expanded.instances;
  std::vector<du::SmartPtr<zelk::Object>> items;
  for (std::size_t i = 0; i < rows / 10; ++i) {
    items.emplace_back(instances[i * step]);
  }
  Figures figures;
  const auto tell = [&](bool isOn) {
    return shown.TimeToPaint([&] {
      shown.model.StartTreeUpdate();
      isOn ? shown.model.SelectItems(items) : shown.model.ClearSelection();
      shown.model.FinishTreeUpdate();
    });
  };
  const double select = tell(true);
  Require(CountRows(shown.view.selectionModel()->selection()) == items.size(), "the view has selected the rows");
  figures["ranges"] = static_cast<double>(shown.view.selectionModel()->selection().size());
  figures["paint_ms"] = shown.TimeToPaint([] {});
  figures["again_ms"] = tell(true);
  figures["click_ms"] = shown.TimeToPaint([&] {
    shown.view.selectionModel()->select(shown.model.index(0, 0),
                                        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  });
  tell(true);
  figures["clear_ms"] = tell(false);
  return MakeFigures(select / s_milliseconds, figures);
}

Figures Repaint(std::size_t rows)
{
  ExpandedView expanded(rows);
  ShownModel& shown = expanded.shown;
  const std::vector<Instance>& instances = expanded.instances;
  Figures figures;
  figures["all_ms"] = shown.TimeToPaint([&] { shown.model.UpdateVisAndTypeIcons(nullptr, nullptr); });
  qthost::GuiTreeItemModel::ChangeMap changes;
  changes[instances[rows / 2].Get()] = 18;
  figures["one_ms"] =
      shown.TimeToPaint([&] { shown.model.UpdateVisAndTypeIconChanges(nullptr, &changes, nullptr, nullptr); });
  for (std::size_t i = 0; i < 20; ++i) {
    changes[instances[i * rows / 20].Get()] = 18;
  }
  figures["scattered_20_ms"] =
      shown.TimeToPaint([&] { shown.model.UpdateVisAndTypeIconChanges(nullptr, &changes, nullptr, nullptr); });
  for (std::size_t i = 0; i < rows / 10; ++i) {
    changes[instances[i * 10].Get()] = 18;
  }
  const double tenth =
      shown.TimeToPaint([&] { shown.model.UpdateVisAndTypeIconChanges(nullptr, &changes, nullptr, nullptr); });
  return MakeFigures(tenth / s_milliseconds, figures);
}

/// All children of one parent but the first are taken out of its middle, and put back.
Figures EditMiddle(std::size_t rows)
{
  const auto tree = du::MakeSmart<memkernel::Tree>();
  const auto product = tree->CreateProduct({.name = "part"});
  const Instance root(tree->CreateRoot(product));
  for (std::size_t i = 1; i < rows; ++i) {
    tree->AddChild(tree->GetRootInstance(), product);
  }
  const std::vector<Instance> instances = ListInstances(*tree);
  qthost::GuiTreeItemModel model;
  Panel panel(tree, model);
  panel.Populate();
  const std::size_t middle = rows / 2;
  const std::size_t count = rows / 4;
  Figures figures;
  const double remove = Time([&] {
    for (std::size_t i = 0; i < count; ++i) {
      model.InstanceRemove(instances[middle + i], root, false);
      Require(model.FindIndex(instances.back().Get()).row() == static_cast<int>(rows - 3 - i), "rows move up");
    }
  });
  figures["insert_us"] = Time([&] {
                           for (std::size_t i = 0; i < count; ++i) {
                             model.InstanceCreate(instances[middle + count - 1 - i], root, {}, false);
                           }
                         })
                         / static_cast<double>(count) * 1e6;
  Require(model.GetRowCount() == rows, "all rows are back");
  figures["remove_us"] = remove / static_cast<double>(count) * 1e6;
  return MakeFigures(remove, figures);
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  const std::vector<std::int64_t> counts{10'000, 100'000, 1'000'000};
  for (const auto& [name, shape] : {std::pair("typical", bench::Shape::Typical), std::pair("wide", bench::Shape::Wide),
                                    std::pair("deep", bench::Shape::Deep)}) {
    bench::Register(std::string("QtModelFill/") + name, counts,
                    [shape = shape](std::size_t rows) { return bench::Fill(rows, shape); });
  }
  bench::Register("QtModelFillView", counts, bench::FillView);
  bench::Register("QtModelSelect/neighbours", counts, [](std::size_t rows) { return bench::Select(rows, 1); });
  bench::Register("QtModelSelect/scattered", counts, [](std::size_t rows) { return bench::Select(rows, 10); });
  bench::Register("QtModelRepaint", counts, bench::Repaint);
  bench::Register("QtModelEditMiddle", {20'000, 200'000}, bench::EditMiddle);
  return bench::RunAll(argc, argv);
}
