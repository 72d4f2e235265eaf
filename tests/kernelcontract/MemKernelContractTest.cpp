#include "MemKernelUnderTest.h"
#include "kernelcontract/ContractSuite.h"

namespace {

const bool s_isRegistered =
    kernelcontract::RegisterContract("memkernel", [] { return std::make_unique<contracttest::MemKernelUnderTest>(); });

}  // namespace
