#pragma once

#include <map>

#include "kernelcontract/KernelUnderTest.h"
#include "memkernel/World.h"

namespace contracttest {

// begin class
/// memkernel, as the contract suite sees it.
class MemKernelUnderTest : public kernelcontract::KernelUnderTest {
public:
  MemKernelUnderTest();
  ~MemKernelUnderTest() override;

  zelk::World& GetWorld() override { return *m_world; }
  du::SmartPtr<dom::ManagedObject> CreateManagedObject() override { return m_world->CreateManagedObject(); }
  void RunLoop() override { m_world->GetLoop().RunDue(); }
  void EndWorld() override { m_world->Shutdown(); }

  du::SmartPtr<zelk::Instance> AddInstance(const du::SmartPtr<zelk::Instance>& parent, const std::string& product,
                                           const std::string& name) override;
  void RemoveInstance(const du::SmartPtr<zelk::Instance>& instance) override;
  bool RenameInstance(const du::SmartPtr<zelk::Instance>& instance, const std::string& name) override;
  bool Set3dSymbol(const du::SmartPtr<zelk::Instance>& instance, bool on) override;
  std::shared_ptr<void> OpenBatch() override;

  du::SmartPtr<zelk::ShapeScene> CreateScene() override { return m_world->CreateShapeScene(); }
  du::SmartPtr<zelk::ShapeView> CreateView(const du::SmartPtr<zelk::ShapeScene>& scene) override;
  du::SmartPtr<zelk::ShapeInstance> AddShapeInstance(const du::SmartPtr<zelk::ShapeScene>& scene,
                                                     const du::SmartPtr<zelk::Instance>& instance) override;
  void RemoveShapeInstance(const du::SmartPtr<zelk::ShapeScene>& scene,
                           const du::SmartPtr<zelk::Instance>& instance) override;
  void SetVisible(const du::SmartPtr<zelk::ShapeScene>& scene, const du::SmartPtr<zelk::ShapeInstance>& shapeInstance,
                  bool visible) override;

  du::SmartPtr<zelloader::Loader> GetLoader() override;
  du::SmartPtr<zelk::Shape> CreateShape(bool canBeLoaded) override;

private:
  const du::SmartPtr<memkernel::World> m_world;
  std::map<std::string, du::SmartPtr<memkernel::Product>> m_products;
};
// end class

}  // namespace contracttest
