#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kernelcontract/KernelUnderTest.h"

namespace kernelcontract {

/// One promise of the kernel contract, and the test that holds a kernel to it. It reports to GoogleTest.
struct ContractCase {
  /// "Tree", "Selection" and so on.
  std::string group;
  /// A sentence.
  std::string name;
  void (*run)(KernelUnderTest& kernel);
};

using KernelFactory = std::function<std::unique_ptr<KernelUnderTest>()>;

/// All cases, in a fixed order.
[[nodiscard]] const std::vector<ContractCase>& GetContractCases();

/// Makes each case a GoogleTest test "KERNEL/GROUP.NAME" on a kernel of its own. To be called before the tests run,
/// from the initialiser of a static object or from `main`:
///
///     const bool s_isRegistered = kernelcontract::RegisterContract("mykernel", [] { return std::make_unique<Mine>();
///     });
///
/// Returns true.
bool RegisterContract(const std::string& kernel, const KernelFactory& factory);

}  // namespace kernelcontract
