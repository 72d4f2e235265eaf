#pragma once

#include <memory>

#include "dom/ManagedObject.h"
#include "du/SmartPtr.h"
#include "memkernel/Loader.h"
#include "memkernel/OwnerLoop.h"
#include "memkernel/Preferences.h"
#include "memkernel/ProgressController.h"
#include "memkernel/SelectionManager.h"
#include "memkernel/ShapeScene.h"
#include "memkernel/TaskPool.h"
#include "memkernel/Tree.h"
#include "memkernel/View.h"
#include "zelk/World.h"

namespace memkernel {

/// A whole kernel: a loop, a task pool, an empty tree with a selection manager, preferences, progress and a loader. The
/// thread that makes it owns it, and lets go of it.
///
///     const auto world = du::MakeSmart<memkernel::World>();
///     world->InstallForProcess();
///     auto& tree = world->GetMemTree();        // fill it: see memkernel::Tree
///     const auto host = world->CreateManagedObject();
///     while (isRunning) world->GetLoop().WaitAndRun(100ms);
///     world->Shutdown();
class World final : public zelk::World {
public:
  /// 0 workers: as many as `TaskPool` chooses.
  explicit World(unsigned int workers = 0);
  /// As `Shutdown`.
  ~World() override;

  /// Makes this the world, and its loader the loader, of the process, in place of any other. The process holds a
  /// reference until `RemoveFromProcess`, or `Shutdown`.
  void InstallForProcess();
  /// Nothing where another world is installed; the same for its loader.
  void RemoveFromProcess();

  /// Ends everything in order: loads are cancelled, the pool is joined (running tasks end, waiting ones come back by
  /// `Abort`), what is due is delivered, observers of the tree hear `OnDestroy` and `OnUnregister`, and the loop is
  /// closed. The second call does nothing. Tree, selection manager and preferences can be read until the world dies.
  void Shutdown();

  [[nodiscard]] OwnerLoop& GetLoop() const noexcept { return *m_loop; }
  [[nodiscard]] const du::SmartPtr<OwnerLoop>& GetLoopPtr() const noexcept { return m_loop; }
  [[nodiscard]] Tree& GetMemTree() const noexcept { return *m_tree; }
  [[nodiscard]] SelectionManager& GetMemSelectionManager() const noexcept { return *m_selectionManager; }
  [[nodiscard]] TaskPool& GetMemTaskPool() const noexcept { return *m_pool; }
  [[nodiscard]] Loader& GetMemLoader() const noexcept { return *m_loader; }

  /// The top of a hierarchy of managed objects on this world's loop, for a host.
  [[nodiscard]] du::SmartPtr<dom::ManagedObject> CreateManagedObject() const;
  /// Scenes over this world's tree. A null manager gives the scene one of its own.
  [[nodiscard]] du::SmartPtr<ShapeScene> CreateShapeScene(
      const du::SmartPtr<zelk::SelectionManager>& manager = {}) const;
  [[nodiscard]] du::SmartPtr<GeometryCompareScene> CreateGeometryCompareScene(
      const du::SmartPtr<zelk::SelectionManager>& manager = {}) const;
  [[nodiscard]] du::SmartPtr<SchematicScene> CreateSchematicScene(
      const du::SmartPtr<zelk::SelectionManager>& manager = {}) const;

  [[nodiscard]] du::TaskPool* GetTaskPool() const override { return m_pool.get(); }
  [[nodiscard]] du::SmartPtr<zelk::ProgressController> GetProgressController() override;
  [[nodiscard]] du::SmartPtr<zelk::Preferences> GetPreferences() override;

private:
  void _Shutdown();
  [[nodiscard]] du::SmartPtr<zelk::SelectionManager> _ChooseManager(
      const du::SmartPtr<zelk::SelectionManager>& manager) const;

  const du::SmartPtr<OwnerLoop> m_loop;
  const std::unique_ptr<TaskPool> m_pool;
  const du::SmartPtr<Tree> m_tree;
  const du::SmartPtr<SelectionManager> m_selectionManager;
  const du::SmartPtr<Preferences> m_preferences;
  const du::SmartPtr<ProgressController> m_progressController;
  const du::SmartPtr<Loader> m_loader;
  bool m_isShutDown = false;
};

}  // namespace memkernel
