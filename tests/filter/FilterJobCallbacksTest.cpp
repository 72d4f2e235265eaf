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

/// Tells of its end.
class WatchedResult : public guitree::FilteredTree {
public:
  explicit WatchedResult(const std::function<void()>& onEnd) : m_onEnd(onEnd) {}
  ~WatchedResult() override
  {
    if (const auto hook = m_onEnd) {
      hook();
    }
  }

private:
  const std::function<void()>& m_onEnd;
};

TEST(FilterJobCallbacks, LetsGoOfTheFormerResultAtTheEnd_AlsoOfOneThatEndsThePanelWithIt)
{
  std::function<void()> onEnd;
  JobStage stage;
  stage.state->makeFilteredTree = [&] { return new WatchedResult(onEnd); };
  stage.Request();
  stage.Finish();
  stage.state->makeFilteredTree = nullptr;
  stage.host.events.clear();
  const auto observer = stage.AddObserver();
  std::size_t told = 0;
  onEnd = [&] {
    told = observer->returned;
    stage.gui.Reset();
    stage.state.Reset();
  };
  stage.Request();

  stage.Finish();

  EXPECT_EQ(told, 1U);
  EXPECT_EQ(stage.gui, nullptr);
}

/// Asks a controller for a job, and ends something inside each of the questions.
void EndInsideEachQuestion(const std::function<void(JobStage&)>& request, const std::function<void(JobStage&)>& end)
{
  for (const std::string& question : filtertest::s_jobQuestions) {
    SCOPED_TRACE(question);
    JobStage stage;
    bool isAsked = false;
    const auto onQuestion = [&](const std::string& asked) {
      if (asked.starts_with(question) && !std::exchange(isAsked, true)) {
        end(stage);
      }
    };
    stage.host.onCall = onQuestion;
    stage.state->onQuestion = onQuestion;

    request(stage);
    EXPECT_TRUE(isAsked);
    stage.Finish();
  }
}

TEST(FilterJobCallbacks, MayDropPanelAndStateInsideAnyQuestionOfARequest)
{
  const auto request = [](JobStage& stage) {
    guitree::TreeController& controller = stage.GetController();
    filtertest::JobState* const state = stage.state.Get();
    controller.ApplyFilterToTree(state->filter, state);
  };

  EndInsideEachQuestion(request, [](JobStage& stage) {
    stage.gui.Reset();
    stage.state.Reset();
  });
}

TEST(FilterJobCallbacks, MayEndAControllerOfTheirOwnInsideAnyQuestionOfARequest)
{
  std::unique_ptr<guitree::TreeController> controller;
  const auto request = [&](JobStage& stage) {
    controller = std::make_unique<guitree::TreeController>(stage.gui.Get());
    controller->ApplyFilterToTree(stage.state->filter, stage.state.Get());
    EXPECT_EQ(stage.GetPool().waiting.size(), 0U);
  };

  EndInsideEachQuestion(request, [&](JobStage&) { controller.reset(); });
}

TEST(FilterJobCallbacks, MayEndAPanelThatNobodyCountsWhenAskedForAControl)
{
  JobStage stage;
  auto gui = std::make_unique<guitree::GuiTree>(stage.gui->GetManagedObject());
  const auto state = du::MakeSmart<filtertest::JobState>(*gui);
  gui->SetGuiInterface(&stage.host);
  gui->SetBaseTree(stage.kernel.Get());
  stage.host.makeControl = [&](const auto&) {
    gui.reset();
    return nullptr;
  };

  gui->GetTreeController()->ApplyFilterToTree(state->filter, state.Get());

  EXPECT_EQ(gui, nullptr);
  EXPECT_EQ(stage.GetPool().waiting.size(), 0U);
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
