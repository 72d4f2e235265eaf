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

struct Outcome {
  int failures = 0;
  int omissions = 0;
};

/// What a case reports on a kernel, none of which counts for the running test.
Outcome Judge(const ContractCase& contractCase, kernelcontract::KernelUnderTest& kernel)
{
  testing::TestPartResultArray results;
  {
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &results);
    contractCase.run(kernel);
  }
  Outcome outcome;
  for (int i = 0; i < results.size(); ++i) {
    outcome.failures += results.GetTestPartResult(i).failed() ? 1 : 0;
    outcome.omissions += results.GetTestPartResult(i).skipped() ? 1 : 0;
  }
  return outcome;
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

  EXPECT_GT(Judge(contractCase, *wrong).failures, 0) << GetParam().whatIsWrong;
  EXPECT_EQ(Judge(contractCase, right).failures, 0);
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
    EXPECT_EQ(Judge(each, kernel).failures, 0) << each.name;
  }
}

// A case that is left out on every kernel would hold none to its promise.
TEST(ContractSuite, NoCase_IsLeftOutOnTheKernelInMemory)
{
  for (const ContractCase& each : GetContractCases()) {
    contracttest::MemKernelUnderTest kernel;
    EXPECT_EQ(Judge(each, kernel).omissions, 0) << each.name;
  }
}

}  // namespace
