#pragma once

#include <vector>

#include "kernelcontract/ContractSuite.h"

namespace kernelcontract {

[[nodiscard]] std::vector<ContractCase> GetTreeCases();
[[nodiscard]] std::vector<ContractCase> GetChildListCases();
[[nodiscard]] std::vector<ContractCase> GetTreeObserverCases();
[[nodiscard]] std::vector<ContractCase> GetLockCases();
[[nodiscard]] std::vector<ContractCase> GetSelectionCases();
[[nodiscard]] std::vector<ContractCase> GetAsyncCases();
[[nodiscard]] std::vector<ContractCase> GetSceneCases();
[[nodiscard]] std::vector<ContractCase> GetLoaderCases();

}  // namespace kernelcontract
