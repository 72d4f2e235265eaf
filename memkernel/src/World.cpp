#include "memkernel/World.h"

#include <utility>

namespace memkernel {
namespace {

/// How many turns the end of a world runs at most: messages may post further ones, but not for ever.
constexpr int s_lastTurns = 1000;

}  // namespace

World::World(unsigned int workers)
    : m_loop(du::MakeSmart<OwnerLoop>()),
      m_pool(std::make_unique<TaskPool>(m_loop, workers)),
      m_tree(du::MakeSmart<Tree>()),
      m_selectionManager(du::MakeSmart<SelectionManager>(m_tree)),
      m_preferences(du::MakeSmart<Preferences>()),
      m_progressController(du::MakeSmart<ProgressController>()),
      m_loader(du::MakeSmart<Loader>(*m_pool))
{
  tree = m_tree;
  selectionManager = m_selectionManager;
}

World::~World()
{
  _Shutdown();
}

void World::InstallForProcess()
{
  zelk::World::Install(du::SmartPtr<zelk::World>(this));
  zelloader::Loader::Install(m_loader);
}

void World::RemoveFromProcess()
{
  if (zelk::World::GetWorld() == this) {
    zelk::World::Install(nullptr);
  }
  if (zelloader::Loader::GetLoader() == m_loader) {
    zelloader::Loader::Install(nullptr);
  }
}

void World::Shutdown()
{
  const du::SmartPtr<World> self(this);
  _Shutdown();
}

du::SmartPtr<dom::ManagedObject> World::CreateManagedObject() const
{
  return du::MakeSmart<dom::ManagedObject>(m_loop);
}

du::SmartPtr<ShapeScene> World::CreateShapeScene(const du::SmartPtr<zelk::SelectionManager>& manager) const
{
  return du::MakeSmart<ShapeScene>(_ChooseManager(manager), m_tree);
}

du::SmartPtr<GeometryCompareScene> World::CreateGeometryCompareScene(
    const du::SmartPtr<zelk::SelectionManager>& manager) const
{
  return du::MakeSmart<GeometryCompareScene>(_ChooseManager(manager), m_tree);
}

du::SmartPtr<SchematicScene> World::CreateSchematicScene(const du::SmartPtr<zelk::SelectionManager>& manager) const
{
  return du::MakeSmart<SchematicScene>(_ChooseManager(manager));
}

du::SmartPtr<zelk::ProgressController> World::GetProgressController()
{
  return m_progressController;
}

du::SmartPtr<zelk::Preferences> World::GetPreferences()
{
  return m_preferences;
}

void World::_Shutdown()
{
  if (std::exchange(m_isShutDown, true)) {
    return;
  }
  RemoveFromProcess();
  m_loader->Shutdown();
  m_pool->Shutdown();
  for (int turn = 0; turn < s_lastTurns && m_loop->RunDue() != 0; ++turn) {}
  m_tree->Close();
  m_progressController->Clear();
  m_loop->Close();
}

du::SmartPtr<zelk::SelectionManager> World::_ChooseManager(const du::SmartPtr<zelk::SelectionManager>& manager) const
{
  return manager ? manager : du::SmartPtr<zelk::SelectionManager>(du::MakeSmart<SelectionManager>(m_tree));
}

}  // namespace memkernel
