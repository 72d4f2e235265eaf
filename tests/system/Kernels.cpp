#include "Kernels.h"

namespace systemtest {

class Kernel::SteppedWorld : public zelk::World {
public:
  explicit SteppedWorld(HandPool& pool) : m_pool(pool) {}

  [[nodiscard]] du::TaskPool* GetTaskPool() const override { return &m_pool; }
  [[nodiscard]] du::SmartPtr<zelk::ProgressController> GetProgressController() override { return {}; }
  [[nodiscard]] du::SmartPtr<zelk::Preferences> GetPreferences() override { return m_preferences; }

private:
  HandPool& m_pool;
  const du::SmartPtr<memkernel::Preferences> m_preferences = du::MakeSmart<memkernel::Preferences>();
};

Kernel::Kernel(bool hasThreads)
{
  if (hasThreads) {
    m_threaded = du::MakeSmart<memkernel::World>(3U);
    m_threaded->InstallForProcess();
    world = m_threaded;
    m_loop = m_threaded->GetLoopPtr();
    tree = du::SmartPtr<memkernel::Tree>(&m_threaded->GetMemTree());
    selection = du::SmartPtr<memkernel::SelectionManager>(&m_threaded->GetMemSelectionManager());
  } else {
    m_loop = du::MakeSmart<memkernel::OwnerLoop>();
    world = du::MakeSmart<SteppedWorld>(pool);
    tree = du::MakeSmart<memkernel::Tree>();
    selection = du::MakeSmart<memkernel::SelectionManager>(tree);
    world->tree = tree;
    world->selectionManager = selection;
    zelk::World::Install(world);
    zelloader::Loader::Install(loader);
  }
  // Thumbnails are loaded as shapes are: otherwise nobody outside of the panel would know when their loads end.
  du::DynamicCast<memkernel::Preferences>(world->GetPreferences())->SetBool("Model Viewer/show_3d_thumbnails", true);
}

Kernel::~Kernel()
{
  if (m_threaded) {
    m_threaded->Shutdown();
    return;
  }
  tree->Close();
  zelloader::Loader::Install(nullptr);
  zelk::World::Install(nullptr);
  m_loop->Close();
}

bool Kernel::IsAtWork() const
{
  return m_threaded ? m_threaded->GetMemTaskPool().GetUnfinishedCount() > 0
                    : !pool.waiting.empty() || loader->GetCount() > 0;
}

}  // namespace systemtest
