#include "MemKernelUnderTest.h"

#include "memkernel/ShapeScene.h"
#include "memkernel/View.h"

namespace contracttest {
namespace {

memkernel::ShapeScene& ToMem(const du::SmartPtr<zelk::ShapeScene>& scene)
{
  return dynamic_cast<memkernel::ShapeScene&>(*scene);
}

du::SmartPtr<memkernel::Instance> ToMem(const du::SmartPtr<zelk::Instance>& instance)
{
  return du::DynamicCast<memkernel::Instance>(instance);
}

du::Symbol ToSymbol(const std::string& text)
{
  return du::Symbol(std::string_view(text));
}

}  // namespace

MemKernelUnderTest::MemKernelUnderTest() : m_world(du::MakeSmart<memkernel::World>()) {}

MemKernelUnderTest::~MemKernelUnderTest()
{
  m_world->Shutdown();
}

du::SmartPtr<zelk::Instance> MemKernelUnderTest::AddInstance(const du::SmartPtr<zelk::Instance>& parent,
                                                             const std::string& product, const std::string& name)
{
  memkernel::Tree& tree = m_world->GetMemTree();
  du::SmartPtr<memkernel::Product>& known = m_products[product];
  if (!known) {
    known = tree.CreateProduct({.name = ToSymbol(product)});
  }
  return parent ? tree.AddChild(ToMem(parent), known, ToSymbol(name)) : tree.CreateRoot(known, ToSymbol(name));
}

void MemKernelUnderTest::RemoveInstance(const du::SmartPtr<zelk::Instance>& instance)
{
  m_world->GetMemTree().Remove(ToMem(instance));
}

bool MemKernelUnderTest::RenameInstance(const du::SmartPtr<zelk::Instance>& instance, const std::string& name)
{
  return m_world->GetMemTree().Rename(ToMem(instance), ToSymbol(name));
}

bool MemKernelUnderTest::Set3dSymbol(const du::SmartPtr<zelk::Instance>& instance, bool on)
{
  return m_world->GetMemTree().SetFlags(ToMem(instance), memkernel::Instance3dSymbol, on);
}

std::shared_ptr<void> MemKernelUnderTest::OpenBatch()
{
  return std::make_shared<memkernel::TreeBatch>(m_world->GetMemTree());
}

du::SmartPtr<zelk::ShapeView> MemKernelUnderTest::CreateView(const du::SmartPtr<zelk::ShapeScene>& scene)
{
  return du::MakeSmart<memkernel::ShapeView>(scene);
}

du::SmartPtr<zelk::ShapeInstance> MemKernelUnderTest::AddShapeInstance(const du::SmartPtr<zelk::ShapeScene>& scene,
                                                                       const du::SmartPtr<zelk::Instance>& instance)
{
  return ToMem(scene).CreateShapeInstance(ToMem(instance));
}

void MemKernelUnderTest::RemoveShapeInstance(const du::SmartPtr<zelk::ShapeScene>& scene,
                                             const du::SmartPtr<zelk::Instance>& instance)
{
  ToMem(scene).RemoveShapeInstance(instance);
}

void MemKernelUnderTest::SetVisible(const du::SmartPtr<zelk::ShapeScene>& scene,
                                    const du::SmartPtr<zelk::ShapeInstance>& shapeInstance, bool visible)
{
  ToMem(scene).SetVisible(du::DynamicCast<memkernel::ShapeInstance>(shapeInstance), visible);
}

du::SmartPtr<zelloader::Loader> MemKernelUnderTest::GetLoader()
{
  return du::SmartPtr<zelloader::Loader>(&m_world->GetMemLoader());
}

du::SmartPtr<zelk::Shape> MemKernelUnderTest::CreateShape(bool canBeLoaded)
{
  const zelk::ShapeDataStatus result = canBeLoaded ? zelk::ShapeDataLoaded : zelk::ShapeDataFailed;
  return du::MakeSmart<memkernel::Shape>([result](memkernel::LoadContext&) { return result; });
}

}  // namespace contracttest
