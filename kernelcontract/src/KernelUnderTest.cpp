#include "kernelcontract/KernelUnderTest.h"

namespace kernelcontract {

bool KernelUnderTest::RenameInstance(const du::SmartPtr<zelk::Instance>& /*instance*/, const std::string& /*name*/)
{
  return false;
}

bool KernelUnderTest::Set3dSymbol(const du::SmartPtr<zelk::Instance>& /*instance*/, bool /*on*/)
{
  return false;
}

std::shared_ptr<void> KernelUnderTest::OpenBatch()
{
  return nullptr;
}

du::SmartPtr<zelk::ShapeScene> KernelUnderTest::CreateScene()
{
  return {};
}

du::SmartPtr<zelk::ShapeView> KernelUnderTest::CreateView(const du::SmartPtr<zelk::ShapeScene>& /*scene*/)
{
  return {};
}

du::SmartPtr<zelk::ShapeInstance> KernelUnderTest::AddShapeInstance(const du::SmartPtr<zelk::ShapeScene>& /*scene*/,
                                                                    const du::SmartPtr<zelk::Instance>& /*instance*/)
{
  return {};
}

void KernelUnderTest::RemoveShapeInstance(const du::SmartPtr<zelk::ShapeScene>& /*scene*/,
                                          const du::SmartPtr<zelk::Instance>& /*instance*/)
{
}

void KernelUnderTest::SetVisible(const du::SmartPtr<zelk::ShapeScene>& /*scene*/,
                                 const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/, bool /*visible*/)
{
}

du::SmartPtr<zelloader::Loader> KernelUnderTest::GetLoader()
{
  return {};
}

du::SmartPtr<zelk::Shape> KernelUnderTest::CreateShape(bool /*canBeLoaded*/)
{
  return {};
}

}  // namespace kernelcontract
