#include "CheckedHost.h"

namespace {

using hosttest::Create;
using hosttest::Instance;
using hosttest::Make;
using testing::ElementsAre;
using testing::IsEmpty;

class ProtocolCheckerRows : public hosttest::ProtocolCheckerTest {
protected:
  const Instance root = Make("root");
  const Instance plate = Make("plate", root);
  const Instance bolt = Make("bolt", plate);
};

TEST_F(ProtocolCheckerRows, RowsInOrder_AreNoViolation)
{
  BeginPopulation();
  Create(checker, root);
  Create(checker, plate);
  Create(checker, bolt);
  EndPopulation();

  EXPECT_EQ(checker.GetRowCount(), 3U);
  ExpectNoViolation();
}

TEST_F(ProtocolCheckerRows, Child_BeforeItsParent_IsAViolationWhenTheParentComes)
{
  BeginPopulation();
  Create(checker, root);
  Create(checker, bolt);
  EXPECT_THAT(checker.GetViolations(), IsEmpty());

  Create(checker, plate);

  EXPECT_THAT(checker.GetViolations(), ElementsAre("call 8: InstanceCreate(plate): the row comes after rows below it"));
}

TEST_F(ProtocolCheckerRows, Grandchild_BeforeItsGrandparent_IsAViolationAlsoWhenTheParentIsHidden)
{
  BeginPopulation();
  Create(checker, bolt);

  Create(checker, root);

  EXPECT_THAT(checker.GetViolations(), ElementsAre("call 7: InstanceCreate(root): the row comes after rows below it"));
}

TEST_F(ProtocolCheckerRows, Children_OfParentsThatNeverGetARow_AreNoViolation)
{
  const Instance nut = Make("nut", plate);
  BeginPopulation();
  Create(checker, root);
  Create(checker, bolt);
  Create(checker, nut);
  EndPopulation();

  EXPECT_EQ(checker.GetRowCount(), 3U);
  ExpectNoViolation();
}

TEST_F(ProtocolCheckerRows, HiddenParent_WhoseRowsHaveGone_MayGetARow)
{
  BeginPopulation();
  Create(checker, root);
  Create(checker, bolt);
  checker.InstanceRemove(bolt, plate, false);
  Create(checker, plate);
  EndPopulation();

  ExpectNoViolation();
}

TEST_F(ProtocolCheckerRows, Row_ThatComesTwice_IsAViolation)
{
  BeginPopulation();
  Create(checker, root);
  Create(checker, root);

  EXPECT_THAT(checker.GetViolations(), ElementsAre("call 7: InstanceCreate(root): the row is there already"));
  EXPECT_EQ(checker.GetRowCount(), 1U);
}

TEST_F(ProtocolCheckerRows, Row_WithoutAnInstance_IsAViolation)
{
  BeginPopulation();
  checker.InstanceCreate(du::SmartPtr<zelk::BaseInstance>(), {}, {}, false);
  guitree::FilteredTree::Node placeholder;
  checker.InstanceCreate(&placeholder, {}, false);

  EXPECT_THAT(checker.GetViolations(), ElementsAre("call 6: InstanceCreate(): a row without an instance",
                                                   "call 7: InstanceCreate(): a row without an instance"));
}

TEST_F(ProtocolCheckerRows, Removal_TakesTheRowsBelowWithIt)
{
  BeginPopulation();
  Create(checker, root);
  Create(checker, plate);
  Create(checker, bolt);
  checker.InstanceRemove(plate, root, false);
  EXPECT_EQ(checker.GetRowCount(), 1U);

  checker.InstanceRemove(bolt, plate, false);

  EXPECT_THAT(checker.GetViolations(), ElementsAre("call 10: InstanceRemove(bolt): there is no such row"));
}

TEST_F(ProtocolCheckerRows, Removal_OfARowThatNeverCame_IsAViolation)
{
  BeginPopulation();
  checker.InstanceRemove(bolt, plate, false);
  checker.InstanceRemove({}, {}, false);

  EXPECT_THAT(checker.GetViolations(), ElementsAre("call 6: InstanceRemove(bolt): there is no such row",
                                                   "call 7: InstanceRemove(): there is no such row"));
}

TEST_F(ProtocolCheckerRows, Row_BelowARemovedOne_IsAViolation)
{
  plate->parent = nullptr;
  BeginPopulation();
  Create(checker, root);
  Create(checker, plate);
  checker.InstanceRemove(plate, root, false);

  Create(checker, bolt);

  EXPECT_THAT(checker.GetViolations(),
              ElementsAre("call 9: InstanceCreate(bolt): it lies below a row that was removed"));
}

TEST_F(ProtocolCheckerRows, Row_BelowOneThatWasRemovedAndPutBackHidden_IsNoViolation)
{
  BeginPopulation();
  Create(checker, root);
  Create(checker, plate);
  checker.InstanceRemove(plate, root, false);
  Create(checker, bolt);
  EndPopulation();

  ExpectNoViolation();
}

TEST_F(ProtocolCheckerRows, Row_ThatWasRemovedAndComesBack_IsNoViolation)
{
  BeginPopulation();
  Create(checker, root);
  checker.InstanceRemove(root, {}, false);
  Create(checker, root);
  Create(checker, plate);
  EndPopulation();

  ExpectNoViolation();
}

TEST_F(ProtocolCheckerRows, NewName_ForARowThatIsNotThere_IsAViolation)
{
  BeginPopulation();
  Create(checker, root);
  checker.CheckAndUpdateNodeNameAndType(root);
  checker.CheckAndUpdateNodeNameAndType(bolt);

  EXPECT_THAT(checker.GetViolations(),
              ElementsAre("call 8: CheckAndUpdateNodeNameAndType(bolt): there is no such row"));
}

TEST_F(ProtocolCheckerRows, Nodes_AreCheckedAlongTheirOwnParents)
{
  guitree::FilteredTree::Node rootNode{.instance = root.Get()};
  guitree::FilteredTree::Node boltNode{.instance = bolt.Get(), .parent = &rootNode};
  BeginPopulation();
  checker.InstanceCreate(&boltNode, {}, false);

  checker.InstanceCreate(&rootNode, {}, false);

  EXPECT_THAT(checker.GetViolations(), ElementsAre("call 7: InstanceCreate(root): the row comes after rows below it"));
}

TEST_F(ProtocolCheckerRows, DeepChain_IsCheckedAndRemovedWithoutRecursion)
{
  constexpr std::size_t depth = 100'000;
  std::vector<Instance> chain{root};
  BeginPopulation();
  Create(checker, root);
  for (std::size_t level = 1; level < depth; ++level) {
    chain.push_back(Make("link", chain.back()));
    Create(checker, chain.back());
  }
  EXPECT_EQ(checker.GetRowCount(), depth);
  checker.InstanceRemove(chain[1], root, false);
  EndPopulation();

  EXPECT_EQ(checker.GetRowCount(), 1U);
  ExpectNoViolation();
}

}  // namespace
