#include "support/LivePanel.h"

#include "support/Walk.h"
#include "zelremote/StructureFilterInfo.h"

namespace bench {
namespace {

class UnfilteredState final : public guitree::WorldTreeState {
public:
  using WorldTreeState::WorldTreeState;

  int GetUnloadedTypeIcon(const zelk::BaseInstance* /*instance*/, const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    return 0;
  }
  structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& /*view*/) override { return m_filter; }

private:
  zelremote::StructureFilterInfo m_filter{"bench"};
};

}  // namespace

LivePanel::LivePanel(const du::SmartPtr<memkernel::Tree>& tree, guitree::GuiInterface& host)
    : m_tree(tree),
      m_world(du::MakeSmart<memkernel::World>(1U)),
      m_selection(du::MakeSmart<memkernel::SelectionManager>(tree)),
      m_guiTree(du::MakeSmart<guitree::GuiTree>(m_world->CreateManagedObject()))
{
  m_world->tree = tree;
  m_world->selectionManager = m_selection;
  m_world->InstallForProcess();
  m_guiTree->SetGuiInterface(&host);
  m_guiTree->SetTreeState(du::MakeSmart<UnfilteredState>(*m_guiTree));
  m_guiTree->Initialise(m_world);
  WalkDepthFirst(*tree, [this](const zelk::BaseInstance& instance, std::size_t /*depth*/) {
    // The kernel hands its instances out to be edited; only the walk reads.
    m_instances.emplace_back(const_cast<zelk::Instance*>(&dynamic_cast<const zelk::Instance&>(instance)));
  });
}

LivePanel::~LivePanel()
{
  for (const auto& scene : m_scenes) {
    m_guiTree->OnSceneRemoved(scene);
  }
  m_guiTree->Reset();
  m_guiTree->Close();
  m_world->Shutdown();
}

du::SmartPtr<memkernel::ShapeView> LivePanel::AddScene()
{
  const auto scene = du::MakeSmart<memkernel::ShapeScene>(m_selection, m_tree);
  const auto shape = du::MakeSmart<memkernel::Shape>(nullptr, zelk::ShapeDataLoaded);
  for (const auto& instance : m_instances) {
    scene->CreateShapeInstance(du::DynamicCast<memkernel::Instance>(instance), {.shape = shape});
  }
  m_guiTree->OnSceneAdded(scene);
  m_scenes.push_back(scene);
  return du::MakeSmart<memkernel::ShapeView>(scene);
}

std::size_t LivePanel::GetRowCount() const
{
  return m_guiTree->GetTreeState()->GetNotFilteredSet().size();
}

}  // namespace bench
