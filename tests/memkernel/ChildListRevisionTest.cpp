#include <set>

#include "TreeFixture.h"

namespace memkerneltest {
namespace {

using memkernel::Tree;

class ChildListRevisionTest : public TreeFixture {};

TEST_F(ChildListRevisionTest, WithoutAChange_ItIsTheSameAndNotZero)
{
  const auto revision = root->GetChildListRevision();

  EXPECT_NE(revision, 0U);
  EXPECT_EQ(root->GetChildListRevision(), revision);
}

TEST_F(ChildListRevisionTest, EachChildThatComes_RaisesItByOne)
{
  const auto revision = root->GetChildListRevision();

  const auto last = Add(root, "A");
  EXPECT_EQ(root->GetChildListRevision(), revision + 1);

  tree->InsertBefore(last, MakeProduct("B"));
  EXPECT_EQ(root->GetChildListRevision(), revision + 2);
}

TEST_F(ChildListRevisionTest, AChildThatGoes_RaisesItByMoreThanOne)
{
  const auto a = Add(root, "A");
  const auto revision = root->GetChildListRevision();

  tree->Remove(a);

  EXPECT_GT(root->GetChildListRevision(), revision + 1);
}

TEST_F(ChildListRevisionTest, AChildThatTurnsInto3dSymbolOrBack_RaisesItByMoreThanOne)
{
  const auto a = Add(root, "A");
  const auto before = root->GetChildListRevision();

  tree->SetFlags(a, memkernel::Instance3dSymbol | memkernel::InstanceBody, true);
  const auto between = root->GetChildListRevision();
  tree->SetFlags(a, memkernel::Instance3dSymbol, false);

  EXPECT_GT(between, before + 1);
  EXPECT_GT(root->GetChildListRevision(), between + 1);
}

TEST_F(ChildListRevisionTest, WhatElseHappensToAChildOrBelowIt_LeavesItAlone)
{
  const auto a = Add(root, "A", memkernel::Instance3dSymbol);
  const auto revision = root->GetChildListRevision();

  tree->Remove(Add(a, "B"));
  tree->Rename(a, "C");
  tree->SetFlags(a, memkernel::InstanceBody, true);
  tree->SetFlags(a, memkernel::Instance3dSymbol, true);
  tree->SetProperty(a, "G", "N", "V");

  EXPECT_EQ(root->GetChildListRevision(), revision);
}

TEST_F(ChildListRevisionTest, TheRootAsA3dSymbol_ChangesNoList)
{
  EXPECT_TRUE(tree->SetFlags(root, memkernel::Instance3dSymbol, true));
  EXPECT_TRUE(root->Is3dSymbol());
}

TEST_F(ChildListRevisionTest, OutsideOfTheTree_ItIsZero)
{
  const auto a = Add(root, "A");
  const auto b = Add(a, "B");
  EXPECT_NE(b->GetChildListRevision(), 0U);

  tree->Remove(a);

  EXPECT_EQ(a->GetChildListRevision(), 0U);
  EXPECT_EQ(b->GetChildListRevision(), 0U);
}

TEST_F(ChildListRevisionTest, AfterTheEndOfTheTree_ItIsZero)
{
  auto other = du::MakeSmart<Tree>();
  const auto top = other->CreateRoot(other->CreateProduct({.name = "T"}));
  EXPECT_NE(top->GetChildListRevision(), 0U);

  other.Reset();

  EXPECT_EQ(top->GetChildListRevision(), 0U);
}

TEST_F(ChildListRevisionTest, NoTwoInstances_AlsoOfDifferentTrees_HaveOneInCommon)
{
  constexpr int rounds = 100;
  std::set<std::uint64_t> seen;
  for (int round = 0; round < rounds; ++round) {
    const auto other = du::MakeSmart<Tree>();
    const auto top = other->CreateRoot(other->CreateProduct({.name = "T"}));
    const auto child = other->AddChild(top, other->CreateProduct({.name = "C"}));

    seen.insert(top->GetChildListRevision());
    seen.insert(child->GetChildListRevision());
    other->AddChild(child, child->GetProduct());
    seen.insert(child->GetChildListRevision());
  }

  EXPECT_EQ(seen.size(), 3U * rounds);
}

}  // namespace
}  // namespace memkerneltest
