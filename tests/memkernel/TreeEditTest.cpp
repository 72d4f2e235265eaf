#include "TreeFixture.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace memkerneltest {
namespace {

using memkernel::TreeBatch;
using testing::ElementsAre;
using testing::IsEmpty;

class TreeEditTest : public TreeFixture {};

TEST_F(TreeEditTest, AddChild_OutsideOfABatch_IsARunOfItsOwn)
{
  Add(root, "A");
  Add(root, "B");

  EXPECT_THAT(recorder->Take(),
              ElementsAre("begin", "create A in R as A", "end", "begin", "create B in R as B", "end"));
  EXPECT_EQ(Draw(root), "R(A B)");
}

TEST_F(TreeEditTest, Batch_BracketsAllEditsOnceHoweverDeeplyItNests)
{
  {
    const TreeBatch outer(*tree);
    const auto a = Add(root, "A");
    {
      const TreeBatch inner(*tree);
      Add(a, "B");
    }
    Add(root, "C");
  }

  EXPECT_THAT(recorder->Take(),
              ElementsAre("begin", "create A in R as A", "create B in A as B", "create C in R as C", "end"));
}

TEST_F(TreeEditTest, Batch_WithoutEdits_TellsNothing)
{
  {
    const TreeBatch batch(*tree);
  }

  EXPECT_THAT(recorder->Take(), IsEmpty());
}

TEST_F(TreeEditTest, CreateRoot_ForATreeThatHasOne_IsRefused)
{
  EXPECT_FALSE(tree->CreateRoot(MakeProduct("S")));

  EXPECT_EQ(tree->GetRootInstance(), root);
  EXPECT_THAT(recorder->Take(), IsEmpty());
}

TEST_F(TreeEditTest, AddChild_OfNothingOrToNothing_IsRefused)
{
  const auto other = du::MakeSmart<memkernel::Tree>();
  const auto foreignProduct = other->CreateProduct({.name = "F"});
  const auto foreignRoot = other->CreateRoot(foreignProduct);

  EXPECT_FALSE(tree->AddChild(nullptr, MakeProduct("A")));
  EXPECT_FALSE(tree->AddChild(root, nullptr));
  EXPECT_FALSE(tree->AddChild(root, foreignProduct));
  EXPECT_FALSE(tree->AddChild(foreignRoot, MakeProduct("A")));

  EXPECT_THAT(recorder->Take(), IsEmpty());
  EXPECT_EQ(GetCount(), 1U);
}

TEST_F(TreeEditTest, InsertBefore_PutsItInFrontOfTheSibling)
{
  const auto b = Add(root, "B");
  const auto d = Add(root, "D");

  tree->InsertBefore(b, MakeProduct("A"));
  tree->InsertBefore(d, MakeProduct("C"));

  EXPECT_EQ(Draw(root), "R(A B C D)");
  EXPECT_FALSE(tree->InsertBefore(root, MakeProduct("E")));
}

TEST_F(TreeEditTest, Remove_AnnouncesTheInstanceAndThenItsDescendantsParentsFirst)
{
  const auto a = Add(root, "A");
  const auto b = Add(a, "B");
  Add(b, "C");
  Add(a, "D");
  Add(root, "E");
  (void)recorder->Take();

  EXPECT_TRUE(tree->Remove(a));

  EXPECT_THAT(recorder->Take(),
              ElementsAre("begin", "remove A from R", "remove B from A", "remove C from B", "remove D from A", "end"));
  EXPECT_EQ(Draw(root), "R(E)");
  EXPECT_EQ(GetCount(), 2U);
}

TEST_F(TreeEditTest, Remove_TellsOfAnUnlinkedInstanceWithItsOwnSubtreeIntact)
{
  const auto a = Add(root, "A");
  Add(Add(a, "B"), "C");
  std::string drawn;
  du::SmartPtr<zelk::BaseInstance> parent = root;
  recorder->onLine = [&](const std::string& line) {
    if (line == "remove A from R") {
      drawn = Draw(a);
      a->GetBaseParent(parent);
    }
  };

  tree->Remove(a);

  EXPECT_EQ(drawn, "A(B(C))");
  EXPECT_FALSE(parent);
}

TEST_F(TreeEditTest, Remove_LeavesWhatItTakesOutWithoutATree)
{
  const auto a = Add(root, "A");
  const auto b = Add(a, "B");

  tree->Remove(a);

  du::SmartPtr<zelk::BaseTree> found = tree;
  b->GetBaseTree(found);
  EXPECT_FALSE(found);
  EXPECT_FALSE(b->IsInTree());
  EXPECT_FALSE(tree->Remove(b));
  EXPECT_FALSE(Add(a, "C"));
}

TEST_F(TreeEditTest, Remove_OfTheRoot_EmptiesTheTreeWhichMayBeFilledAgain)
{
  Add(root, "A");
  (void)recorder->Take();

  tree->Remove(root);

  EXPECT_THAT(recorder->Take(), ElementsAre("begin", "remove R from nothing", "remove A from R", "end"));
  EXPECT_EQ(GetCount(), 0U);
  EXPECT_FALSE(tree->GetRootInstance());
  EXPECT_TRUE(tree->CreateRoot(MakeProduct("S")));
}

TEST_F(TreeEditTest, Edits_FromInsideACallback_AreRefused)
{
  const auto product = MakeProduct("X");
  int refused = 0;
  recorder->onLine = [&](const std::string& line) {
    if (line.starts_with("create")) {
      EXPECT_TRUE(tree->IsTellingObservers());
      refused += tree->AddChild(root, product) ? 0 : 1;
      refused += tree->InsertBefore(root, product) ? 0 : 1;
      refused += tree->Remove(root) ? 0 : 1;
      refused += tree->Rename(root, "S") ? 0 : 1;
      refused += tree->RenameProduct(product, "S") ? 0 : 1;
      refused += tree->SetFlags(root, memkernel::InstancePlainIcon, true) ? 0 : 1;
    }
  };

  Add(root, "A");

  EXPECT_EQ(refused, 6);
  EXPECT_EQ(Draw(root), "R(A)");
}

TEST_F(TreeEditTest, Edits_FromInsideEndOfUpdate_AreARunOfTheirOwn)
{
  bool isFirst = true;
  recorder->onLine = [&](const std::string& line) {
    if (line == "end" && std::exchange(isFirst, false)) {
      Add(root, "B");
    }
  };

  Add(root, "A");

  EXPECT_THAT(recorder->Take(),
              ElementsAre("begin", "create A in R as A", "end", "begin", "create B in R as B", "end"));
}

TEST_F(TreeEditTest, Rename_GivesANameOfItsOwnAndTakesItAway)
{
  const auto product = MakeProduct("Bolt");
  const auto first = tree->AddChild(root, product);
  const auto second = tree->AddChild(root, product, "Left bolt");
  (void)recorder->Take();
  EXPECT_EQ(Draw(root), "R(Bolt Left bolt)");

  tree->Rename(first, "Right bolt");
  tree->Rename(second, "");
  tree->Rename(second, "Bolt");

  EXPECT_EQ(Draw(root), "R(Right bolt Bolt)");
  EXPECT_THAT(recorder->Take(), ElementsAre("begin", "name Right bolt", "end", "begin", "name Bolt", "end"));
}

TEST_F(TreeEditTest, RenameProduct_ChangesAllInstancesWithoutAName)
{
  const auto product = MakeProduct("Bolt");
  tree->AddChild(root, product);
  tree->AddChild(root, product, "Mine");
  (void)recorder->Take();

  EXPECT_TRUE(tree->RenameProduct(product, "Screw"));

  EXPECT_EQ(Draw(root), "R(Screw Mine)");
  EXPECT_THAT(recorder->Take(), ElementsAre("begin", "names", "end"));
}

TEST_F(TreeEditTest, SetFlags_TellsOnlyOfAChangeAndRefusesProxyFlags)
{
  const auto a = Add(root, "A");
  (void)recorder->Take();

  EXPECT_TRUE(tree->SetFlags(a, memkernel::Instance3dSymbol | memkernel::InstancePlainIcon, true));
  EXPECT_TRUE(tree->SetFlags(a, memkernel::Instance3dSymbol, true));
  EXPECT_FALSE(tree->SetFlags(a, memkernel::InstanceProxy, true));
  EXPECT_FALSE(tree->SetFlags(a, 1U << 20U, true));

  EXPECT_TRUE(a->Is3dSymbol());
  EXPECT_TRUE(a->IsPlainIconInstance());
  EXPECT_FALSE(a->IsProxy());
  EXPECT_THAT(recorder->Take(), ElementsAre("begin", "properties A", "end"));
}

TEST_F(TreeEditTest, Proxy_ExpandsFailsCollapsesAndBecomesANode)
{
  const auto p = Add(root, "P", memkernel::InstanceProxy);
  Add(p, "C");
  (void)recorder->Take();

  EXPECT_TRUE(tree->FailProxy(p));
  EXPECT_TRUE(p->HasProxyExpandFailed());
  EXPECT_TRUE(tree->ExpandProxy(p));
  EXPECT_TRUE(p->IsProxyExpanded());
  EXPECT_FALSE(p->HasProxyExpandFailed());
  EXPECT_TRUE(tree->ExpandProxy(p));
  EXPECT_TRUE(tree->CollapseProxy(p));
  EXPECT_FALSE(p->IsProxyExpanded());
  EXPECT_TRUE(tree->TurnProxyToNode(p));
  EXPECT_FALSE(p->IsProxy());
  EXPECT_FALSE(tree->ExpandProxy(p));

  EXPECT_THAT(recorder->Take(), ElementsAre("begin", "expanded P", "end", "begin", "expanded P", "end", "begin",
                                            "remove C from P", "collapsed P", "end", "begin", "node P", "end"));
}

TEST_F(TreeEditTest, Viewables_AreKeptAndTold)
{
  const auto a = Add(root, "A");
  const du::SmartPtr<zelk::Object> viewable = Add(root, "V");
  (void)recorder->Take();

  EXPECT_TRUE(tree->AddViewable(a, viewable));
  EXPECT_TRUE(tree->AddViewable(a, nullptr));
  EXPECT_EQ(a->GetViewables().size(), 2U);
  EXPECT_TRUE(tree->RemoveViewable(a, viewable));
  EXPECT_FALSE(tree->RemoveViewable(a, viewable));

  EXPECT_EQ(a->GetViewables().size(), 1U);
  EXPECT_THAT(recorder->Take(), ElementsAre("begin", "viewable A", "end", "begin", "empty viewable A", "end", "begin",
                                            "no viewable A", "end"));
}

TEST_F(TreeEditTest, Notices_ReachTheObserversInBrackets)
{
  {
    const TreeBatch batch(*tree);
    tree->NotifyTreeColumnsChanged();
    tree->NotifyPropertyGroupsLoaded();
  }

  EXPECT_THAT(recorder->Take(), ElementsAre("begin", "columns", "groups", "end"));
}

}  // namespace
}  // namespace memkerneltest
