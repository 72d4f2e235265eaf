#include "support/StructurePanel.h"

#include "guitree/TreeController.h"

namespace bench {

void CountingHost::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& /*instance*/,
                                  const du::SmartPtr<zelk::BaseInstance>& /*parent*/,
                                  const du::SmartPtr<guitree::TreeSelectionController>& /*controller*/,
                                  bool /*assocHlight*/)
{
  ++rows;
}

void CountingHost::InstanceCreate(guitree::FilteredTree::Node* /*node*/,
                                  const du::SmartPtr<guitree::TreeSelectionController>& /*controller*/,
                                  bool /*assocHlight*/)
{
  ++rows;
}

void CountingHost::UpdateVisAndTypeIconChanges(
    const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* /*visibleMap*/,
    const du::HashMap<const zelk::BaseInstance*, int>* /*visibleChangeMap*/, guitree::TypeIconMap* /*typeIconMap*/,
    const du::HashMap<const zelk::BaseInstance*, int>* /*typeIconChangeMap*/)
{
  ++sceneUpdates;
}

StructurePanel::StructurePanel(const du::SmartPtr<memkernel::Tree>& tree)
    : m_world(du::MakeSmart<memkernel::World>(1U)),
      m_guiTree(du::MakeSmart<guitree::GuiTree>(m_world->CreateManagedObject())),
      m_state(du::MakeSmart<guitree::StructureTreeState>(*m_guiTree, true))
{
  m_world->tree = tree;
  m_world->InstallForProcess();
  m_guiTree->SetGuiInterface(&m_host);
  m_guiTree->SetTreeState(m_state);
  m_guiTree->Initialise(m_world);
}

StructurePanel::~StructurePanel()
{
  m_guiTree->Reset();
  m_guiTree->Close();
  m_world->Shutdown();
}

zelremote::StructureFilterInfo& StructurePanel::GetFilter() const
{
  return dynamic_cast<zelremote::StructureFilterInfo&>(m_state->GetFilter(m_guiTree->GetCurrentView()));
}

void StructurePanel::Settle()
{
  const auto isQuiet = [this] {
    return !m_guiTree->GetTreeController()->IsBusy() && m_world->GetMemTaskPool().GetUnfinishedCount() == 0;
  };
  do {
    m_world->GetLoop().RunUntil(isQuiet);
    m_world->GetLoop().RunDue();
  } while (!isQuiet());
}

}  // namespace bench
