#include "kernelcontract/ContractSuite.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "MemKernelUnderTest.h"
#include "WrongKernels.h"

namespace {

using kernelcontract::ContractCase;
using kernelcontract::GetContractCases;

/// How many failures a case reports on a kernel, none of which count for the running test.
int CountFailures(const ContractCase& contractCase, kernelcontract::KernelUnderTest& kernel)
{
  testing::TestPartResultArray results;
  {
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &results);
    contractCase.run(kernel);
  }
  int failures = 0;
  for (int i = 0; i < results.size(); ++i) {
    failures += results.GetTestPartResult(i).failed() ? 1 : 0;
  }
  return failures;
}

const ContractCase& Find(const std::string& name)
{
  return *std::find_if(GetContractCases().begin(), GetContractCases().end(),
                       [&](const ContractCase& each) { return each.group + "." + each.name == name; });
}

TEST(ContractSuite, TheNamesOfTheCases_AreUnique)
{
  std::set<std::string> names;
  for (const ContractCase& each : GetContractCases()) {
    EXPECT_TRUE(names.insert(each.group + "." + each.name).second) << each.name;
  }
}

class AWrongKernel : public testing::TestWithParam<contracttest::WrongKernel> {};

TEST_P(AWrongKernel, IsNoticed)
{
  const ContractCase& contractCase = Find(GetParam().noticedBy);
  const auto wrong = GetParam().make();
  contracttest::MemKernelUnderTest right;

  EXPECT_GT(CountFailures(contractCase, *wrong), 0) << GetParam().whatIsWrong;
  EXPECT_EQ(CountFailures(contractCase, right), 0);
}

INSTANTIATE_TEST_SUITE_P(ContractSuite, AWrongKernel, testing::ValuesIn(contracttest::GetWrongKernels()),
                         [](const auto& each) { return each.param.whatIsWrong; });

/// Supports only what every kernel must.
class SmallKernel : public contracttest::MemKernelUnderTest {
public:
  bool RenameInstance(const du::SmartPtr<zelk::Instance>& instance, const std::string& name) override
  {
    return KernelUnderTest::RenameInstance(instance, name);
  }
  bool Set3dSymbol(const du::SmartPtr<zelk::Instance>& instance, bool on) override
  {
    return KernelUnderTest::Set3dSymbol(instance, on);
  }
  std::shared_ptr<void> OpenBatch() override { return KernelUnderTest::OpenBatch(); }
  du::SmartPtr<zelk::ShapeScene> CreateScene() override { return KernelUnderTest::CreateScene(); }
  du::SmartPtr<zelloader::Loader> GetLoader() override { return KernelUnderTest::GetLoader(); }
};

TEST(ContractSuite, AKernelWithoutBatchesScenesOrLoader_FailsNowhere)
{
  for (const ContractCase& each : GetContractCases()) {
    SmallKernel kernel;
    EXPECT_EQ(CountFailures(each, kernel), 0) << each.name;
  }
}

}  // namespace
