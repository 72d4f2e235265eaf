#include "kernelcontract/ContractSuite.h"

#include <gtest/gtest.h>

#include <iterator>

#include "Cases.h"

namespace kernelcontract {
namespace {

class ContractTest : public testing::Test {
public:
  ContractTest(void (*run)(KernelUnderTest&), KernelFactory factory) : m_run(run), m_factory(std::move(factory)) {}

  void TestBody() override
  {
    const std::unique_ptr<KernelUnderTest> kernel = m_factory();
    m_run(*kernel);
  }

private:
  void (*m_run)(KernelUnderTest&);
  KernelFactory m_factory;
};

std::vector<ContractCase> CollectCases()
{
  std::vector<ContractCase> all;
  for (auto* getCases : {&GetTreeCases, &GetChildListCases, &GetTreeObserverCases, &GetLockCases, &GetSelectionCases,
                         &GetAsyncCases, &GetSceneCases, &GetLoaderCases}) {
    std::vector<ContractCase> cases = getCases();
    std::move(cases.begin(), cases.end(), std::back_inserter(all));
  }
  return all;
}

}  // namespace

const std::vector<ContractCase>& GetContractCases()
{
  static const std::vector<ContractCase> s_cases = CollectCases();
  return s_cases;
}

bool RegisterContract(const std::string& kernel, const KernelFactory& factory)
{
  for (const ContractCase& each : GetContractCases()) {
    const std::string suite = kernel + "/" + each.group;
    testing::RegisterTest(suite.c_str(), each.name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                          [run = each.run, factory]() -> ContractTest* { return new ContractTest(run, factory); });
  }
  return true;
}

}  // namespace kernelcontract
