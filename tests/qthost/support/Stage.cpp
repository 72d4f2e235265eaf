#include "Stage.h"

#include <gmock/gmock.h>

#include "guitree/TreeController.h"

namespace qthosttest {

std::string ReadText(const qthost::GuiTreeItemModel& model, const QModelIndex& parent)
{
  std::string text;
  for (int row = 0; row < model.rowCount(parent); ++row) {
    const QModelIndex index = model.index(row, 0, parent);
    text += (text.empty() ? "" : " ") + index.data().toString().toStdString();
    const std::string below = ReadText(model, index);
    text += below.empty() ? "" : '[' + below + ']';
  }
  const bool hasPlaceholder = parent.data(qthost::GuiTreeItemModel::PlaceholderRole).toBool();
  return !hasPlaceholder ? text : text.empty() ? "..." : text + " ...";
}

Stage::Stage(std::string_view treeText) : kernel(treeText, du::SmartPtr<memkernel::Tree>(&tree))
{
  // What is below a placeholder is for the tests to open.
  tester.setUseFetchMore(false);
  world->InstallForProcess();
  model.SetPanel(gui.Get());
  gui->SetGuiInterface(&checker);
  gui->SetTreeState(state);
}

Stage::~Stage()
{
  if (checksProtocol) {
    EXPECT_THAT(checker.GetViolations(), testing::IsEmpty());
  }
  Close();
  world->Shutdown();
}

void Stage::Initialise()
{
  gui->Initialise(world);
}

void Stage::Close()
{
  if (gui) {
    Settle();
    gui->Reset();
    gui->Close();
    gui.Reset();
    state.Reset();
  }
}

zelremote::StructureFilterInfo& Stage::GetFilter() const
{
  return *state->GetStructureFilter();
}

void Stage::Filter(const std::string& text)
{
  GetFilter().SetText(text);
  state->PopulateTree(false);
  Settle();
}

void Stage::EndFilter()
{
  Filter("");
}

void Stage::Settle()
{
  world->GetLoop().RunUntil([this] { return !gui->GetTreeController()->IsBusy(); });
  while (world->GetLoop().RunDue() > 0) {}
}

void Stage::ShowScene()
{
  scene = world->CreateShapeScene(du::SmartPtr<zelk::SelectionManager>(&world->GetMemSelectionManager()));
  view = du::MakeSmart<memkernel::ShapeView>(scene);
  const auto shape = du::MakeSmart<memkernel::Shape>(nullptr, zelk::ShapeDataLoaded);
  for (const auto& [name, instance] : kernel.GetInstances()) {
    if (!instance->HasChildren()) {
      scene->CreateShapeInstance(instance, {.shape = shape});
    }
  }
  model.GetSceneManagerObserver()->OnSceneAdded(scene);
  model.GetSceneManagerObserver()->OnActiveViewChanged(view);
  Settle();
}

du::SmartPtr<memkernel::ShapeInstance> Stage::GetShape(const std::string& name) const
{
  return scene->FindShapeInstance(kernel[name].Get());
}

std::vector<std::string> Stage::GetNames(const QItemSelection& selection) const
{
  std::vector<std::string> names;
  for (const QItemSelectionRange& range : selection) {
    EXPECT_EQ(range.width(), model.columnCount());
    for (int row = range.top(); row <= range.bottom(); ++row) {
      names.push_back(model.index(row, 0, range.parent()).data().toString().toStdString());
    }
  }
  return names;
}

}  // namespace qthosttest
