#include "CheckedHost.h"

namespace {

using hosttest::Create;
using hosttest::Instance;
using hosttest::Make;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ProtocolCheckerPopulation : public hosttest::ProtocolCheckerTest {
protected:
  const Instance root = Make("root");
  const Instance bolt = Make("bolt", root);
};

TEST_F(ProtocolCheckerPopulation, EditsOutsideOfBrackets_AreViolations)
{
  checker.StoreExpandedAndFirstVisibleBeforePopulate(false);
  checker.ClearTree();
  Create(checker, root);
  checker.InstanceRemove(root, {}, false);
  checker.RestoreExpandedAfterPopulate();

  EXPECT_THAT(checker.GetViolations(),
              ElementsAre("call 2: ClearTree(): outside of StartTreeUpdate and FinishTreeUpdate",
                          "call 3: InstanceCreate(root): outside of StartTreeUpdate and FinishTreeUpdate",
                          "call 4: InstanceRemove(root): outside of StartTreeUpdate and FinishTreeUpdate",
                          "call 5: RestoreExpandedAfterPopulate(): outside of StartTreeUpdate and FinishTreeUpdate"));
}

TEST_F(ProtocolCheckerPopulation, RemovalWhileARepopulationIsPending_MayStandOutsideOfBrackets)
{
  BeginPopulation();
  Create(checker, root);
  EndPopulation();
  checker.InstanceRemove(root, {}, true);

  ExpectNoViolation();
}

TEST_F(ProtocolCheckerPopulation, EditsInTheOuterOfTwoBrackets_AreNoViolation)
{
  checker.StartTreeUpdate();
  checker.StartTreeUpdate();
  checker.FinishTreeUpdate();
  Create(checker, root);
  checker.FinishTreeUpdate();

  ExpectNoViolation();
}

TEST_F(ProtocolCheckerPopulation, FinishWithoutAStart_IsANoteAndCountsForNothing)
{
  checker.FinishTreeUpdate();
  checker.StartTreeUpdate();
  Create(checker, root);
  checker.FinishTreeUpdate();

  EXPECT_THAT(checker.GetNotes(), ElementsAre("call 1: FinishTreeUpdate(): no StartTreeUpdate before it"));
  ExpectNoViolation();
}

TEST_F(ProtocolCheckerPopulation, CheckAtRest_WithAnOpenBracket_IsAViolation)
{
  checker.StartTreeUpdate();
  checker.StartTreeUpdate();

  checker.CheckAtRest();

  EXPECT_THAT(checker.GetViolations(), ElementsAre("at rest: 2 StartTreeUpdate without FinishTreeUpdate"));
}

TEST_F(ProtocolCheckerPopulation, CheckAtRest_AfterAPopulationThatNeverCleared_IsAViolation)
{
  checker.StoreExpandedAndFirstVisibleBeforePopulate(true);

  checker.CheckAtRest();

  EXPECT_THAT(checker.GetViolations(), ElementsAre("at rest: a population has begun and never cleared the rows"));
}

TEST_F(ProtocolCheckerPopulation, ClearTreeWithoutTheBeginningOfAPopulation_IsAViolation)
{
  BeginPopulation();
  EndPopulation();
  checker.StartTreeUpdate();
  checker.ClearTree();

  EXPECT_THAT(checker.GetViolations(),
              ElementsAre("call 11: ClearTree(): no StoreExpandedAndFirstVisibleBeforePopulate before it"));
}

TEST_F(ProtocolCheckerPopulation, RowsAfterTheHostSaidItIsInvisible_AreViolations)
{
  next.isTreeVisibleInUI = false;
  BeginPopulation();

  Create(checker, root);

  EXPECT_THAT(checker.GetViolations(),
              ElementsAre("call 6: InstanceCreate(root): the host has just said that it shows no rows"));
}

TEST_F(ProtocolCheckerPopulation, RowsAfterTheHostRefusedTheView_AreViolations)
{
  next.isValidView = false;
  BeginPopulation();

  Create(checker, root);

  EXPECT_THAT(checker.GetViolations(), SizeIs(1));
}

TEST_F(ProtocolCheckerPopulation, RowsInLaterBatchesOfAnInvisiblePanel_AreNoViolation)
{
  next.isTreeVisibleInUI = false;
  BeginPopulation();
  checker.FinishTreeUpdate();
  checker.StartTreeUpdate();
  Create(checker, bolt);
  checker.FinishTreeUpdate();

  ExpectNoViolation();
}

TEST_F(ProtocolCheckerPopulation, QuestionsAwayFromAClearing_DoNotForbidRows)
{
  next.isTreeVisibleInUI = false;
  checker.StartTreeUpdate();
  static_cast<void>(checker.IsTreeVisibleInUI());
  Create(checker, root);
  checker.FinishTreeUpdate();

  ExpectNoViolation();
}

TEST_F(ProtocolCheckerPopulation, PopulationInsideAnother_MayRepeatRowsUntilTheBatchEnds)
{
  BeginPopulation();
  Create(checker, root);
  BeginPopulation();
  Create(checker, root);
  Create(checker, bolt);
  EndPopulation();
  Create(checker, bolt);
  EndPopulation();
  EXPECT_THAT(checker.GetViolations(), IsEmpty());

  checker.StartTreeUpdate();
  Create(checker, bolt);

  EXPECT_THAT(checker.GetViolations(), SizeIs(1));
  EXPECT_THAT(checker.GetViolations().front(), testing::EndsWith("InstanceCreate(bolt): the row is there already"));
}

TEST_F(ProtocolCheckerPopulation, PopulationFromTheFirstCallOfAnother_IsNoViolation)
{
  checker.StoreExpandedAndFirstVisibleBeforePopulate(false);
  BeginPopulation();
  EndPopulation();
  checker.StartTreeUpdate();
  checker.ClearTree();
  checker.FinishTreeUpdate();

  ExpectNoViolation();
}

TEST_F(ProtocolCheckerPopulation, ResetInsideABatch_TakesTheRowsAndLeavesTheBrackets)
{
  checker.StartTreeUpdate();
  Create(checker, root);
  checker.Reset();
  EXPECT_EQ(checker.GetRowCount(), 0U);
  Create(checker, root);
  checker.FinishTreeUpdate();

  ExpectNoViolation();
}

TEST_F(ProtocolCheckerPopulation, Callback_GetsEachViolationBeforeTheNextHostIsCalled)
{
  std::vector<std::string> heard;
  hostcheck::ProtocolChecker watched(nullptr, [&heard](const std::string& violation) { heard.push_back(violation); });

  watched.ClearTree();

  EXPECT_EQ(heard, watched.GetViolations());
  EXPECT_THAT(heard, SizeIs(2));
}

TEST_F(ProtocolCheckerPopulation, Violations_AreKeptUpToALimitAndCountedBeyond)
{
  for (std::size_t count = 0; count < hostcheck::ProtocolChecker::s_maxKept + 5; ++count) {
    checker.InstanceRemove(bolt, root, true);
  }

  EXPECT_THAT(checker.GetViolations(), SizeIs(hostcheck::ProtocolChecker::s_maxKept));
  EXPECT_EQ(checker.GetViolationCount(), hostcheck::ProtocolChecker::s_maxKept + 5);
}

TEST_F(ProtocolCheckerPopulation, Answers_AreThoseOfTheNextHost)
{
  next.isValidView = false;
  next.checkAndUpdateNodeNameAndType = true;
  checker.StartTreeUpdate();
  Create(checker, root);

  EXPECT_FALSE(checker.IsValidView({}));
  EXPECT_TRUE(checker.IsTreeVisibleInUI());
  EXPECT_TRUE(checker.CheckAndUpdateNodeNameAndType(root));
}

}  // namespace
