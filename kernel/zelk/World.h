#pragma once

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "du/TaskPool.h"
#include "zelk/Preferences.h"
#include "zelk/ProgressController.h"
#include "zelk/SelectionManager.h"
#include "zelk/Tree.h"

namespace zelk {

/// What a running kernel offers to its clients: one tree, a selection and the services. A kernel derives from it and
/// installs one object for the process. Owner's thread, unless an operation says otherwise.
class World : public virtual du::RefCounted {
public:
  /// The installed world; null while no kernel runs. Any thread.
  [[nodiscard]] static du::SmartPtr<World> GetWorld();
  /// Makes `world` the one that `GetWorld` answers, in place of any other; null removes it. The process holds a
  /// reference until then.
  static void Install(const du::SmartPtr<World>& world);

  /// Null when the kernel has no workers. Lives as long as the world.
  [[nodiscard]] virtual du::TaskPool* GetTaskPool() const = 0;
  /// May be null.
  [[nodiscard]] virtual du::SmartPtr<ProgressController> GetProgressController() = 0;
  /// May be null.
  [[nodiscard]] virtual du::SmartPtr<Preferences> GetPreferences() = 0;

  /// The selection that holds while no view is current; may be null.
  du::SmartPtr<SelectionManager> selectionManager;
  /// May be null.
  du::SmartPtr<Tree> tree;
};

}  // namespace zelk
