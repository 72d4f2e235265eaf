#include "RowCommands.h"

#include <algorithm>
#include <set>
#include <utility>

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

#include "StructureView.h"
#include "SvgIcon.h"
#include "VisibilityDelegate.h"
#include "guitree/TreeSelectionController.h"
#include "guitree/TreeStateBase.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"
#include "zelk/BaseInstanceVisitor.h"
#include "zelk/PropertyValue.h"

namespace qthost {

namespace {

du::Symbol ReadProductName(const zelk::BaseInstance& instance)
{
  static const du::Symbol s_productName("Product Name");
  du::SmartPtr<zelk::PropertyValue> value;
  instance.GetPropertyValue(value, zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, s_productName,
                            du::Symbol::EMPTY);
  du::Symbol name;
  if (value) {
    value->GetValueAsSymbol(name);
  }
  return name.IsEmpty() ? instance.GetObjectName() : name;
}

/// Collects what is of one of these products.
class ProductFinder final : public zelk::BaseInstanceVisitor {
public:
  explicit ProductFinder(GuiTreePanel::ProductReader read) : m_read(std::move(read)) {}

  void AddProductOf(const zelk::BaseInstance& instance)
  {
    if (const du::Symbol product = m_read(instance); !product.IsEmpty()) {
      m_products.insert(product);
    }
  }
  bool VisitInstance(const du::SmartPtr<zelk::BaseInstance>& instance) override
  {
    if (m_products.contains(m_read(*instance))) {
      m_found.insert(instance);
    }
    return true;
  }
  [[nodiscard]] const std::set<GuiTreeItemModel::Instance>& GetFound() const noexcept { return m_found; }

private:
  const GuiTreePanel::ProductReader m_read;
  std::set<du::Symbol> m_products;
  std::set<GuiTreeItemModel::Instance> m_found;
};

}  // namespace

RowCommands::RowCommands(StructureView& view, GuiTreeItemModel& model)
    : QObject(&view), m_view(view), m_model(model), m_readProduct(ReadProductName)
{
  _Add(Command::Show, tr("&Show"), tr("Show the chosen rows, with all below them"), QStringLiteral("eye-visible"),
       &RowCommands::_Show);
  _Add(Command::Hide, tr("&Hide"), tr("Hide the chosen rows, with all below them"), QStringLiteral("eye-hidden"),
       &RowCommands::_Hide);
  _Add(Command::ShowOnly, tr("Show &only this"), tr("Show the chosen rows, and hide everything else"),
       QStringLiteral("show-only"), &RowCommands::_ShowOnly);
  _Add(Command::ToggleVisibility, tr("Show or hide"), tr("Show the chosen rows, or hide them if all are shown"),
       QStringLiteral("eye-mixed"), &RowCommands::_Toggle)
      ->setShortcut(Qt::Key_Space);
  _Add(Command::SelectProduct, tr("Select &all of this product"), tr("Select every instance of the chosen products"),
       QStringLiteral("select-product"), &RowCommands::_SelectProduct);
  _Add(Command::ExpandBranch, tr("&Expand branch"), tr("Open the chosen rows with all below them"),
       QStringLiteral("expand"), &RowCommands::_ExpandBranch);
  _Add(Command::CollapseBranch, tr("Co&llapse branch"), tr("Close the chosen rows with all below them"),
       QStringLiteral("collapse"), &RowCommands::_CollapseBranch);
  _Add(Command::CopyName, tr("&Copy name"), tr("Copy the names of the chosen rows"), QStringLiteral("copy"),
       &RowCommands::_CopyName)
      ->setShortcut(QKeySequence::Copy);
}

RowCommands::~RowCommands() = default;

QAction* RowCommands::_Add(Command command, const QString& text, const QString& toolTip, const QString& icon, Work work)
{
  auto* const action = new QAction(text, this);
  action->setToolTip(toolTip);
  action->setData(icon);
  action->setShortcutContext(Qt::WidgetShortcut);
  connect(action, &QAction::triggered, this, [this, work] { (this->*work)(); });
  m_view.addAction(action);
  m_actions[static_cast<std::size_t>(command)] = action;
  return action;
}

QAction& RowCommands::GetAction(Command command) const
{
  return *m_actions.at(static_cast<std::size_t>(command));
}

void RowCommands::SetVisibilityHook(GuiTreePanel::VisibilityHook hook)
{
  m_setVisible = std::move(hook);
}

void RowCommands::SetProductReader(GuiTreePanel::ProductReader reader)
{
  m_readProduct = reader ? std::move(reader) : ReadProductName;
}

void RowCommands::SetIcons(const QPalette& palette)
{
  for (QAction* const action : m_actions) {
    action->setIcon(MakeSvgIcon(action->data().toString(), palette));
  }
}

void RowCommands::AddTo(QMenu& menu)
{
  for (const Command command : {Command::Show, Command::Hide, Command::ShowOnly}) {
    menu.addAction(&GetAction(command));
  }
  menu.addSeparator();
  menu.addAction(&GetAction(Command::SelectProduct));
  menu.addSeparator();
  menu.addAction(&GetAction(Command::ExpandBranch));
  menu.addAction(&GetAction(Command::CollapseBranch));
  menu.addSeparator();
  menu.addAction(&GetAction(Command::CopyName));
  _EnableWhatIsPossible();
  // Elsewhere the commands stay on: each does nothing where it cannot do anything.
  connect(&menu, &QMenu::aboutToHide, this, [this] {
    std::for_each(m_actions.begin(), m_actions.end(), [](QAction* action) { action->setEnabled(true); });
  });
}

void RowCommands::_EnableWhatIsPossible()
{
  const bool hasRow = m_view.IsAnyChosen([](const QModelIndex& /*row*/) { return true; });
  const bool hasBranch = m_view.IsAnyChosen([this](const QModelIndex& row) { return m_model.hasChildren(row); });
  for (QAction* const action : m_actions) {
    action->setEnabled(hasRow);
  }
  for (const Command command : {Command::Show, Command::Hide, Command::ShowOnly}) {
    GetAction(command).setEnabled(hasRow && m_setVisible);
  }
  GetAction(Command::ExpandBranch).setEnabled(hasBranch);
  GetAction(Command::CollapseBranch).setEnabled(hasBranch);
}

GuiTreePanel::Instances RowCommands::_GetChosen() const
{
  GuiTreePanel::Instances instances;
  for (const QModelIndex& row : m_view.GetChosenRows()) {
    instances.push_back(m_model.GetInstance(row));
  }
  return instances;
}

bool RowCommands::_SetVisible(bool isVisible)
{
  const GuiTreePanel::Instances chosen = _GetChosen();
  return m_setVisible && !chosen.empty() && m_setVisible(chosen, isVisible);
}

void RowCommands::_Show()
{
  _SetVisible(true);
}

void RowCommands::_Hide()
{
  _SetVisible(false);
}

void RowCommands::_ShowOnly()
{
  const GuiTreePanel::Instances chosen = _GetChosen();
  const guitree::GuiTree* const panel = m_model.GetPanel();
  const auto topmost = panel && panel->GetTreeState() ? panel->GetTreeState()->GetBaseRoot() : nullptr;
  if (!m_setVisible || chosen.empty() || !topmost) {
    return;
  }
  m_setVisible({topmost}, false);
  m_setVisible(chosen, true);
}

// As a click on an eye: where there was nothing to show, everything is hidden.
void RowCommands::_Toggle()
{
  const bool isToBeShown = m_view.IsAnyChosen([](const QModelIndex& row) {
    return VisibilityDelegate::IsToBeShown(row.siblingAtColumn(GuiTreeItemModel::VisibleColumn));
  });
  if (!isToBeShown || !_SetVisible(true)) {
    _SetVisible(false);
  }
}

void RowCommands::_SelectProduct()
{
  const guitree::GuiTree* const panel = m_model.GetPanel();
  if (!panel || !panel->GetTreeState() || !panel->GetBaseTree()) {
    return;
  }
  const auto controller = panel->GetTreeState()->GetSelController(false);
  ProductFinder finder(m_readProduct);
  for (const auto& instance : _GetChosen()) {
    finder.AddProductOf(*instance);
  }
  panel->GetBaseTree()->Visit(finder, zelk::BaseTree::VisitParentsFirst);
  if (controller && !finder.GetFound().empty()) {
    controller->SetItems(finder.GetFound());
  }
}

void RowCommands::_ExpandBranch()
{
  m_view.SetBranchesExpanded(m_view.GetChosenRows(), true);
}

void RowCommands::_CollapseBranch()
{
  m_view.SetBranchesExpanded(m_view.GetChosenRows(), false);
}

void RowCommands::_CopyName()
{
  QStringList names;
  for (const QModelIndex& row : m_view.GetChosenRows()) {
    names << row.data().toString();
  }
  if (!names.isEmpty()) {
    QGuiApplication::clipboard()->setText(names.join(u'\n'));
  }
}

}  // namespace qthost
