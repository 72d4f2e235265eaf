#pragma once

#include "kernelcontract/ContractSuite.h"

namespace contracttest {

/// memkernel behind something that breaks one promise.
struct WrongKernel {
  const char* whatIsWrong;
  /// The case that must notice: "GROUP.NAME".
  const char* noticedBy;
  std::unique_ptr<kernelcontract::KernelUnderTest> (*make)();
};

[[nodiscard]] const std::vector<WrongKernel>& GetWrongKernels();

}  // namespace contracttest
