#include <gtest/gtest.h>

#include <memory>

#include "JobStage.h"

namespace {

using filtertest::JobStage;
using filtertest::Show;
using filtertest::TreeWatch;

TEST(FilterJobCallbacks, LetsGoOfTheFormerResultAtTheEnd_WhoeverHearsOfItMayDropThePanel)
{
  JobStage stage;
  auto former = du::MakeSmart<memkernel::Tree>();
  const auto watch = du::MakeSmart<TreeWatch>();
  former->RegisterObserver(*watch, false);
  former->CreateRoot(former->CreateProduct({.name = "former"}));
  stage.gui->SetBaseTree(former);
  stage.Request();
  stage.Finish();
  const auto observer = stage.AddObserver();
  stage.gui->SetBaseTree(stage.kernel.Get());
  former.Reset();
  stage.host.events.clear();
  bool wasTold = false;
  watch->onEnd = [&] {
    wasTold = observer->returned == 1;
    stage.gui.Reset();
    stage.state.Reset();
  };
  stage.Request();
  EXPECT_FALSE(watch->hasEnded);

  stage.Finish();

  EXPECT_TRUE(watch->hasEnded);
  EXPECT_TRUE(wasTold);
  EXPECT_EQ(stage.gui, nullptr);
}

/// A host with the list of what a filter must spare.
class SparingHost : public filtertest::JobHost {
public:
  explicit SparingHost(zelk::BaseInstance* instance) : m_spared{instance} { answers.nonFilteredInsts1 = &m_spared; }

private:
  std::list<zelk::BaseInstance*> m_spared;
};

TEST(FilterJobCallbacks, AsksTheHostOfTheMoment_TheStateMayPutAnotherOneInPlace)
{
  for (const std::string at :
       {"GetAdditionalFilterInfo", "GetDisplayRoot", "GetSelController(false)", "CreateFilteredTree"}) {
    SCOPED_TRACE(at);
    JobStage stage;
    auto former = std::make_unique<SparingHost>(stage.kernel["b"].Get());
    SparingHost next(stage.kernel["c"].Get());
    stage.gui->SetGuiInterface(former.get());
    stage.LetThrough({});
    stage.state->onQuestion = [&](const std::string& question) {
      if (question == at) {
        stage.gui->SetGuiInterface(&next);
        former.reset();
      }
    };

    stage.Request();
    EXPECT_EQ(former, nullptr);
    stage.Finish();

    // What came to be asked for before the change holds.
    EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), at == "CreateFilteredTree" ? "root[a[b]]" : "root[a[c]]");
    stage.gui->SetGuiInterface(&stage.host);
  }
}

}  // namespace
