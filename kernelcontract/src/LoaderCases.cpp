#include <gtest/gtest.h>

#include <thread>

#include "Cases.h"
#include "TestTree.h"

namespace kernelcontract {
namespace {

struct LoadRecord {
  int completions = 0;
  bool isOnOwnersThread = false;
  bool isDestroyed = false;
};

class RecordingLoad : public zelloader::ShapeLoaderEvent {
public:
  explicit RecordingLoad(LoadRecord& record) : m_record(record) {}
  ~RecordingLoad() override { m_record.isDestroyed = true; }

protected:
  void OnComplete(unsigned short /*status*/) override
  {
    ++m_record.completions;
    m_record.isOnOwnersThread = std::this_thread::get_id() == m_owner;
  }

private:
  LoadRecord& m_record;
  const std::thread::id m_owner = std::this_thread::get_id();
};

/// Asks for a shape, and checks that the event completes once, later, and on the owner's thread.
void ExpectThatTheLoadCompletes(KernelUnderTest& kernel, zelloader::Loader& loader,
                                const du::SmartPtr<zelk::Shape>& shape, bool isCanceled)
{
  LoadRecord record;
  const auto manager = kernel.CreateManagedObject();
  {
    const auto event = du::MakeSmart<RecordingLoad>(record);
    ASSERT_TRUE(manager->ManageObject(event));
    loader.LoadShape(shape, du::Flags(zelloader::Loader::LoadGeometry), event.Get(), nullptr);
    EXPECT_EQ(record.completions, 0) << "never inside the call";
    if (isCanceled) {
      event->Cancel();
    }
  }

  EXPECT_TRUE(RunUntil(kernel, [&] { return record.isDestroyed; }));
  EXPECT_EQ(record.completions, 1);
  EXPECT_TRUE(record.isOnOwnersThread);
}

void ALoad_CompletesWhateverComesOfIt(KernelUnderTest& kernel)
{
  const auto loader = kernel.GetLoader();
  if (!loader) {
    GTEST_SKIP() << "this kernel loads nothing";
  }

  ExpectThatTheLoadCompletes(kernel, *loader, kernel.CreateShape(true), false);
  ExpectThatTheLoadCompletes(kernel, *loader, kernel.CreateShape(false), false);
  ExpectThatTheLoadCompletes(kernel, *loader, kernel.CreateShape(true), true);
  ExpectThatTheLoadCompletes(kernel, *loader, nullptr, false);
}

void ALoadOfWhatIsLoadedAlready_Completes(KernelUnderTest& kernel)
{
  const auto loader = kernel.GetLoader();
  if (!loader) {
    GTEST_SKIP() << "this kernel loads nothing";
  }
  const auto shape = kernel.CreateShape(true);

  ExpectThatTheLoadCompletes(kernel, *loader, shape, false);
  ExpectThatTheLoadCompletes(kernel, *loader, shape, false);
}

void TwoLoadsOfOneShape_BothComplete(KernelUnderTest& kernel)
{
  const auto loader = kernel.GetLoader();
  if (!loader) {
    GTEST_SKIP() << "this kernel loads nothing";
  }
  const auto shape = kernel.CreateShape(true);
  const auto manager = kernel.CreateManagedObject();
  LoadRecord first;
  LoadRecord second;
  for (LoadRecord* record : {&first, &second}) {
    const auto event = du::MakeSmart<RecordingLoad>(*record);
    manager->ManageObject(event);
    loader->LoadShape(shape, du::Flags(zelloader::Loader::LoadGeometry), event.Get(), nullptr);
  }

  EXPECT_TRUE(RunUntil(kernel, [&] { return first.isDestroyed && second.isDestroyed; }));
  EXPECT_EQ(first.completions, 1);
  EXPECT_EQ(second.completions, 1);
}

}  // namespace

std::vector<ContractCase> GetLoaderCases()
{
  return {
      {"Loader", "ALoad_CompletesWhateverComesOfIt", &ALoad_CompletesWhateverComesOfIt},
      {"Loader", "ALoadOfWhatIsLoadedAlready_Completes", &ALoadOfWhatIsLoadedAlready_Completes},
      {"Loader", "TwoLoadsOfOneShape_BothComplete", &TwoLoadsOfOneShape_BothComplete},
  };
}

}  // namespace kernelcontract
