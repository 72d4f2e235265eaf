#pragma once

#include <gmock/gmock.h>

#include "TestInstance.h"
#include "hostcheck/ProtocolChecker.h"
#include "testsupport/ScriptedHost.h"

namespace hosttest {

/// A checker in front of a scripted host, and the beginnings and ends of populations.
class ProtocolCheckerTest : public testing::Test {
protected:
  void BeginPopulation()
  {
    checker.StoreExpandedAndFirstVisibleBeforePopulate(false);
    checker.StartTreeUpdate();
    checker.ClearTree();
    static_cast<void>(checker.IsTreeVisibleInUI());
    checker.IsValidView({});
  }

  void EndPopulation()
  {
    checker.UpdateTreeTable();
    checker.RestoreExpandedAfterPopulate();
    checker.FinishTreeUpdate();
    checker.RestoreFirstVisible();
  }

  void ExpectNoViolation()
  {
    checker.CheckAtRest();
    EXPECT_THAT(checker.GetViolations(), testing::IsEmpty());
    EXPECT_EQ(checker.GetViolationCount(), 0U);
  }

  testsupport::ScriptedHost next;
  hostcheck::ProtocolChecker checker{&next};
};

}  // namespace hosttest
