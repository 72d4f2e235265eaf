#pragma once

#include <memory>
#include <string>

#include "dom/ManagedObject.h"
#include "du/SmartPtr.h"
#include "zelk/ShapeScene.h"
#include "zelk/ShapeView.h"
#include "zelk/World.h"
#include "zelloader/Loader.h"

namespace kernelcontract {

/// What the contract suite needs of a kernel: a fresh one for each test, made, edited and destroyed on the thread that
/// runs the test, which is its owner's. The author of a kernel derives from it; what a kernel does not support stays at
/// the default, and the tests that need it are skipped.
class KernelUnderTest {
public:
  KernelUnderTest() = default;
  KernelUnderTest(const KernelUnderTest&) = delete;
  KernelUnderTest& operator=(const KernelUnderTest&) = delete;
  /// Ends the world, if that has not happened.
  virtual ~KernelUnderTest() = default;

  /// The world, whose tree is empty at the start. Lives as long as this object.
  virtual zelk::World& GetWorld() = 0;
  /// What a host would be given: the top of a hierarchy of managed objects.
  virtual du::SmartPtr<dom::ManagedObject> CreateManagedObject() = 0;
  /// Runs what is due in the owner's loop, without waiting.
  virtual void RunLoop() = 0;
  /// Ends the world as a program would before it exits. Called at most once.
  virtual void EndWorld() = 0;

  /// Makes an instance of the product called `product` as the last child of `parent`, or as the root for a null parent.
  /// Instances of one product name are instances of one product. `name` is the instance's own.
  virtual du::SmartPtr<zelk::Instance> AddInstance(const du::SmartPtr<zelk::Instance>& parent,
                                                   const std::string& product, const std::string& name) = 0;
  virtual void RemoveInstance(const du::SmartPtr<zelk::Instance>& instance) = 0;
  /// False where names cannot be changed.
  virtual bool RenameInstance(const du::SmartPtr<zelk::Instance>& instance, const std::string& name);
  /// Turns an instance into a 3D symbol, or a 3D symbol into something else. False where that never changes.
  virtual bool Set3dSymbol(const du::SmartPtr<zelk::Instance>& instance, bool on);
  /// Opens a run of edits; it ends when the result is destroyed. Null where a kernel has no such thing.
  virtual std::shared_ptr<void> OpenBatch();

  /// An empty scene over the tree.
  virtual du::SmartPtr<zelk::ShapeScene> CreateScene();
  /// A view of the scene.
  virtual du::SmartPtr<zelk::ShapeView> CreateView(const du::SmartPtr<zelk::ShapeScene>& scene);
  /// Shows an instance in a scene that `CreateScene` has made; it is visible.
  virtual du::SmartPtr<zelk::ShapeInstance> AddShapeInstance(const du::SmartPtr<zelk::ShapeScene>& scene,
                                                             const du::SmartPtr<zelk::Instance>& instance);
  virtual void RemoveShapeInstance(const du::SmartPtr<zelk::ShapeScene>& scene,
                                   const du::SmartPtr<zelk::Instance>& instance);
  virtual void SetVisible(const du::SmartPtr<zelk::ShapeScene>& scene,
                          const du::SmartPtr<zelk::ShapeInstance>& shapeInstance, bool visible);

  /// The kernel's loader, and shapes without data that it can load, or tries to in vain.
  virtual du::SmartPtr<zelloader::Loader> GetLoader();
  virtual du::SmartPtr<zelk::Shape> CreateShape(bool canBeLoaded);
};

}  // namespace kernelcontract
