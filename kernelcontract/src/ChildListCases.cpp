#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <utility>

#include "Cases.h"
#include "TestTree.h"

namespace kernelcontract {
namespace {

constexpr const char* s_noRevisions = "this kernel keeps no revisions";

void ARevision_IsRaisedByOneWithEachChildThatComes(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto& root = *tree["root"];
  const std::uint64_t revision = root.GetChildListRevision();
  if (revision == 0) {
    GTEST_SKIP() << s_noRevisions;
  }

  kernel.AddInstance(tree["root"], "pump", "e");
  EXPECT_EQ(root.GetChildListRevision(), revision + 1);
  kernel.AddInstance(tree["root"], "bolt", "f");
  EXPECT_EQ(root.GetChildListRevision(), revision + 2);
}

void ARevision_IsRaisedByMoreWithEachChildThatGoes(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto& root = *tree["root"];
  const std::uint64_t revision = root.GetChildListRevision();
  if (revision == 0) {
    GTEST_SKIP() << s_noRevisions;
  }

  kernel.RemoveInstance(tree["b"]);
  const std::uint64_t between = root.GetChildListRevision();
  kernel.RemoveInstance(tree["a"]);

  EXPECT_GT(between, revision + 1);
  EXPECT_GT(root.GetChildListRevision(), between + 1);
}

void ARevision_IsRaisedByMoreWhereAChildTurnsIntoA3dSymbolOrBack(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto& root = *tree["root"];
  const std::uint64_t revision = root.GetChildListRevision();
  if (revision == 0) {
    GTEST_SKIP() << s_noRevisions;
  }

  if (!kernel.Set3dSymbol(tree["b"], true)) {
    GTEST_SKIP() << "in this kernel what is a 3D symbol stays one";
  }
  const std::uint64_t between = root.GetChildListRevision();
  kernel.Set3dSymbol(tree["b"], false);

  EXPECT_GT(between, revision + 1);
  EXPECT_GT(root.GetChildListRevision(), between + 1);
}

void ARevision_StaysWhereTheListOfChildrenDoes(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto& root = *tree["root"];
  const std::uint64_t revision = root.GetChildListRevision();
  if (revision == 0) {
    GTEST_SKIP() << s_noRevisions;
  }

  EXPECT_EQ(root.GetChildListRevision(), revision);
  kernel.AddInstance(tree["d"], "pin", "d1");
  EXPECT_EQ(root.GetChildListRevision(), revision);
  kernel.RemoveInstance(tree["a1"]);
  EXPECT_EQ(root.GetChildListRevision(), revision);
  kernel.RenameInstance(tree["b"], "renamed");
  EXPECT_EQ(root.GetChildListRevision(), revision);
}

void ARevision_OfOneInstance_IsNeverThatOfAnotherAtItsAddress(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  std::set<std::pair<const zelk::BaseInstance*, std::uint64_t>> seen;
  for (int round = 0; round < 100; ++round) {
    auto group = kernel.AddInstance(tree["d"], "frame", "group");
    for (int child = 0; child < 3; ++child) {
      const std::uint64_t revision = group->GetChildListRevision();
      if (revision == 0) {
        GTEST_SKIP() << s_noRevisions;
      }
      EXPECT_TRUE(seen.emplace(group.Get(), revision).second) << "an earlier instance at this address has had it";
      kernel.AddInstance(group, "pin", "inner");
    }
    kernel.RemoveInstance(group);
  }
}

}  // namespace

std::vector<ContractCase> GetChildListCases()
{
  const char* group = "ChildList";
  return {
      {group, "ARevision_IsRaisedByOneWithEachChildThatComes", &ARevision_IsRaisedByOneWithEachChildThatComes},
      {group, "ARevision_IsRaisedByMoreWithEachChildThatGoes", &ARevision_IsRaisedByMoreWithEachChildThatGoes},
      {group, "ARevision_IsRaisedByMoreWhereAChildTurnsIntoA3dSymbolOrBack",
       &ARevision_IsRaisedByMoreWhereAChildTurnsIntoA3dSymbolOrBack},
      {group, "ARevision_StaysWhereTheListOfChildrenDoes", &ARevision_StaysWhereTheListOfChildrenDoes},
      {group, "ARevision_OfOneInstance_IsNeverThatOfAnotherAtItsAddress",
       &ARevision_OfOneInstance_IsNeverThatOfAnotherAtItsAddress},
  };
}

}  // namespace kernelcontract
