// Shows a small assembly in the dock of the guide, filters it by its filter line, hides a branch of it, and prints what
// the rows show.

#include <QApplication>
#include <QTreeView>
#include <iostream>
#include <memory>

#include "StructureDock.h"

namespace {

void Print(const QAbstractItemModel& model, const QModelIndex& parent, const QString& indent)
{
  for (int row = 0; row < model.rowCount(parent); ++row) {
    const QModelIndex index = model.index(row, qthost::GuiTreeItemModel::NameColumn, parent);
    const int visible = index.siblingAtColumn(qthost::GuiTreeItemModel::VisibleColumn).data(Qt::CheckStateRole).toInt();
    std::cout << (visible == Qt::Checked     ? 'x'
                  : visible == Qt::Unchecked ? ' '
                                             : '-')
              << ' ' << (indent + index.data().toString()).toStdString() << '\n';
    Print(model, index, indent + "  ");
  }
}

void FillWorld(memkernel::World& world, memkernel::ShapeScene& scene)
{
  memkernel::Tree& tree = world.GetMemTree();
  const memkernel::TreeBatch batch(tree);
  const auto shape = du::MakeSmart<memkernel::Shape>(memkernel::Shape::Work(), zelk::ShapeDataLoaded);
  const auto bolt = tree.CreateProduct({.name = "bolt", .shape = shape});
  const auto root = tree.CreateRoot(tree.CreateProduct({.name = "bracket"}));
  const auto plate = tree.AddChild(root, tree.CreateProduct({.name = "plate", .shape = shape}));
  for (const auto& instance : {plate, tree.AddChild(plate, bolt), tree.AddChild(root, bolt, "spare bolt")}) {
    scene.CreateShapeInstance(instance);
  }
}

// begin use
std::unique_ptr<StructureDock> MakeDock(const du::SmartPtr<memkernel::World>& world,
                                        const du::SmartPtr<memkernel::ShapeScene>& scene)
{
  auto dock = std::make_unique<StructureDock>(world, scene, du::MakeSmart<memkernel::ShapeView>(scene));
  dock->GetPanel().SetVisibilityHook(
      [scene](const auto& instances, bool isVisible) { return ShowInScene(*scene, instances, isVisible); });
  return dock;
}
// end use

// begin filter
void ShowMatches(qthost::GuiTreePanel& panel, const QString& text)
{
  qthost::FilterSettings filter = panel.GetFilter();
  filter.text = text;
  panel.SetFilter(filter);
}
// end filter

}  // namespace

int main(int argc, char** argv)
{
  const QApplication application(argc, argv);
  const auto world = du::MakeSmart<memkernel::World>();
  world->InstallForProcess();
  const auto scene = world->CreateShapeScene(world->selectionManager);
  FillWorld(*world, *scene);
  {
    const std::unique_ptr<StructureDock> dock = MakeDock(world, scene);
    qthost::GuiTreePanel& panel = dock->GetPanel();
    const qthost::GuiTreeItemModel& model = panel.GetModel();
    dock->show();
    panel.GetView().setCurrentIndex(model.index(0, 0, model.index(0, 0)));
    panel.GetAction(qthost::GuiTreePanel::Command::Hide).trigger();
    Print(model, {}, {});

    ShowMatches(panel, "spare");
    world->GetLoop().RunUntil([&model] { return !model.IsCalculating(); });
    Print(model, {}, {});
  }
  world->Shutdown();
  return 0;
}
