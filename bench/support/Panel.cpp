#include "support/Panel.h"

#include "guitree/SceneInfoLog.h"
#include "guitree/TreeSelectionController.h"
#include "guitree/TreeStateBase.h"
#include "zelremote/StructureFilterInfo.h"

namespace bench {
namespace {

class NothingSelected final : public guitree::TreeSelectionController {
public:
  NothingSelected() : TreeSelectionController(nullptr, false) {}

  unsigned int GetTotalItemCount() override { return 0; }
  void GetSelectedInstances(std::set<du::SmartPtr<zelk::BaseInstance>>& out) override { out.clear(); }
  bool ContainsInstance() override { return false; }
  bool ContainsItem(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) override { return false; }
  void SetItems(const std::set<du::SmartPtr<zelk::BaseInstance>>& /*items*/) override {}
  bool IsItemAssocHlighted(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) override { return false; }
  void GetAssocHlightedInstances(std::set<du::SmartPtr<zelk::BaseInstance>>& out) override { out.clear(); }
};

class PlainState final : public guitree::TreeStateBase {
public:
  using TreeStateBase::TreeStateBase;

  du::SmartPtr<zelk::BaseTree> Initialise_GetZelkTree(const du::SmartPtr<zelk::View>& /*view*/) override
  {
    return GetGuiTree().GetBaseTree();
  }
  du::SmartPtr<guitree::TreeSelectionController> GetSelController(bool /*forRows*/) const override
  {
    return m_controller;
  }
  bool HaveSelController() const override { return true; }
  bool HasInstGotThumbnail(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) const override { return false; }
  void CreateAndRegisterTreeObserver() override {}
  void DeregisterTreeObserver() override {}
  bool IsInstLoaded(const zelk::BaseInstance* /*instance*/) override { return true; }
  guitree::SceneInfoLog* CreateSceneInfoLog() override { return new guitree::SceneInfoLog(&GetGuiTree()); }
  int GetUnloadedTypeIcon(const zelk::BaseInstance* /*instance*/, const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    return 0;
  }
  structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& /*view*/) override { return m_filter; }

private:
  const du::SmartPtr<NothingSelected> m_controller = du::MakeSmart<NothingSelected>();
  zelremote::StructureFilterInfo m_filter{"bench"};
};

}  // namespace

void IdleHost::SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& /*observer*/) {}

void IdleHost::UpdateVisAndTypeIconChanges(
    const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* /*visibleMap*/,
    const du::HashMap<const zelk::BaseInstance*, int>* /*visibleChangeMap*/, guitree::TypeIconMap* /*typeIconMap*/,
    const du::HashMap<const zelk::BaseInstance*, int>* /*typeIconChangeMap*/)
{
}

Panel::Panel(const du::SmartPtr<zelk::BaseTree>& tree, guitree::GuiInterface& host)
    : m_guiTree(du::MakeSmart<guitree::GuiTree>(nullptr))
{
  m_guiTree->SetGuiInterface(&host);
  m_guiTree->SetTreeState(du::MakeSmart<PlainState>(*m_guiTree));
  m_guiTree->SetBaseTree(tree);
}

void Panel::Populate()
{
  m_guiTree->GetTreeState()->PopulateTree(false);
}

std::size_t Panel::GetRowCount() const
{
  return m_guiTree->GetTreeState()->GetNotFilteredSet().size();
}

}  // namespace bench
