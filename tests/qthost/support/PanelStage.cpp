#include "PanelStage.h"

#include <algorithm>
#include <set>

#include <gmock/gmock.h>

#include <QLabel>
#include <QMenu>

#include "guitree/TreeController.h"
#include "guitree/TreeSelectionController.h"

namespace qthosttest {

PanelStage::PanelStage(std::string_view treeText) : Stage(treeText)
{
  panel.SetTypingPause(1);
  panel.SetVisibilityHook([this](const auto& instances, bool isVisible) { return _SetVisible(instances, isVisible); });
  panel.resize(400, 500);
}

PanelStage::~PanelStage() = default;

void PanelStage::Open()
{
  Initialise();
  ShowScene();
  panel.show();
  panel.activateWindow();
  [[maybe_unused]] const bool isActive = QTest::qWaitForWindowActive(&panel);
  Settle();
  GetView().expandAll();
}

QAction& PanelStage::FindAction(const char* menu, const QString& text) const
{
  for (QAction* const action : Find<QMenu>(menu).actions()) {
    if (action->text().remove(u'&') == text) {
      return *action;
    }
  }
  throw std::out_of_range("no action is named " + text.toStdString());
}

void PanelStage::Choose(const QString& text, const char* menu)
{
  FindAction(menu, text).trigger();
}

void PanelStage::WaitForFilter()
{
  ASSERT_TRUE(QTest::qWaitFor([this] { return panel.GetFilter().text == GetLine().text(); }));
  do {
    RunLoops();
    Settle();
  } while (gui->GetTreeController()->IsBusy());
}

void PanelStage::RunLoops()
{
  world->GetLoop().RunDue();
  QCoreApplication::processEvents();
}

std::string PanelStage::GetStatus() const
{
  return Find<QLabel>("rowCount").text().toStdString();
}

std::string PanelStage::GetMessage() const
{
  const auto& text = Find<QLabel>("emptyText");
  return text.isVisible() ? text.text().toStdString() : "";
}

void PanelStage::Select(const std::vector<std::string>& names)
{
  GetView().clearSelection();
  for (const std::string& name : names) {
    GetView().selectionModel()->setCurrentIndex(FindIndex(name),
                                                QItemSelectionModel::Select | QItemSelectionModel::Rows);
  }
}

std::vector<std::string> PanelStage::GetSelectedInKernel() const
{
  std::set<qthost::GuiTreeItemModel::Instance> selected;
  state->GetSelController(false)->GetSelectedInstances(selected);
  std::vector<std::string> names;
  for (const auto& instance : selected) {
    names.emplace_back(instance->GetObjectName());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> PanelStage::GetExpanded() const
{
  std::vector<std::string> names;
  model.VisitBranches([&](const QModelIndex& index) {
    if (GetView().isExpanded(index)) {
      names.push_back(index.data().toString().toStdString());
    }
  });
  return names;
}

std::vector<std::string> PanelStage::GetHidden() const
{
  std::vector<std::string> names;
  for (const auto& [name, instance] : kernel.GetInstances()) {
    const auto shape = scene->FindShapeInstance(instance.Get());
    if (shape && !shape->IsVisible()) {
      names.push_back(name);
    }
  }
  return names;
}

QPoint PanelStage::GetCell(const std::string& name, int column) const
{
  return GetView().visualRect(FindIndex(name).siblingAtColumn(column)).center();
}

void PanelStage::Click(const std::string& name, int column, Qt::MouseButton button)
{
  QTest::mouseClick(GetView().viewport(), button, {}, GetCell(name, column));
}

bool PanelStage::_SetVisible(const qthost::GuiTreePanel::Instances& instances, bool isVisible)
{
  std::string words = isVisible ? "show" : "hide";
  std::set<qthost::GuiTreeItemModel::Instance> all;
  for (const auto& instance : instances) {
    words += ' ' + std::string(instance->GetObjectName());
  }
  asked.push_back(words);
  zelk::BaseInstance::GetInstancesAndDescendents({instances.begin(), instances.end()}, all);
  const std::vector<std::string> before = GetHidden();
  const memkernel::ShapeSceneBatch batch(*scene);
  for (const auto& instance : all) {
    scene->SetVisible(scene->FindShapeInstance(dynamic_cast<const zelk::Instance*>(instance.Get())), isVisible);
  }
  return GetHidden() != before;
}

}  // namespace qthosttest
