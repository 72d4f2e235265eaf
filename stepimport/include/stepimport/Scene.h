#pragma once

#include <cstddef>

#include "du/SmartPtr.h"
#include "memkernel/Instance.h"
#include "memkernel/ShapeScene.h"
#include "memkernel/View.h"
#include "memkernel/World.h"

namespace stepimport {

/// A scene of what was imported, and the view that looks at it. A host reports the scene first, then the view.
struct OpenedScene {
  du::SmartPtr<memkernel::ShapeScene> scene;
  du::SmartPtr<memkernel::ShapeView> view;
};

/// Shows all that the tree of `world` holds, visible, in a new scene: what has a shape gets a shape instance, as by
/// `AddToScene`. To be called once all files are in; an empty tree gives an empty scene. The scene shares the selection
/// of the world, so that what was selected before stays so. Owner's thread; linear in the size of the tree.
///
///     Import(file, world->GetMemTree(), {}, nullptr);
///     const OpenedScene opened = OpenScene(*world);
///     observer->OnSceneAdded(opened.scene);
///     observer->OnActiveViewChanged(opened.view);
[[nodiscard]] OpenedScene OpenScene(const memkernel::World& world);

/// Gives `top` and everything below it that has a shape source a visible shape instance, in the order of the tree and
/// in one batch, and answers how many were made. For what comes into the tree later: a scene does not follow the tree
/// there, only what leaves it leaves the scene by itself. Instances that have a shape instance already keep it as it
/// is; 0 for null and for what is in no tree. Owner's thread; linear in the size of the branch.
std::size_t AddToScene(memkernel::ShapeScene& scene, const du::SmartPtr<memkernel::Instance>& top);

}  // namespace stepimport
