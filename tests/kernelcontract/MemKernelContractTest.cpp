#include "MemKernelUnderTest.h"
#include "kernelcontract/ContractSuite.h"

namespace {

// begin register
const bool s_isRegistered =
    kernelcontract::RegisterContract("memkernel", [] { return std::make_unique<contracttest::MemKernelUnderTest>(); });
// end register

}  // namespace
