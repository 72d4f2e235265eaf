#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/RecordingManagedObject.h"
#include "testsupport/RecordingSelectionManager.h"

namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Matcher;
using testsupport::MakeView;
using testsupport::Panel;
using testsupport::PlainScene;
using testsupport::PlainShapeScene;
using testsupport::PlainShapeView;
using testsupport::PlainView;
using testsupport::RecordingManagedObject;
using testsupport::RecordingSelectionManager;

using Entry = RecordingManagedObject::Entry;

/// Given to the manager while no subject knew it.
[[nodiscard]] Matcher<const Entry&> IsManagedFirst(const dom::ManagedObject* object)
{
  return AllOf(Field(&Entry::object, object), Field(&Entry::wasRegistered, false));
}

/// An initialised panel whose manager writes down whom it is given, and a scene with a selection.
class ManagedObservers : public testing::Test {
protected:
  ManagedObservers()
  {
    scene->selectionManager = selection;
    panel.Initialise();
  }
  ~ManagedObservers() override
  {
    GetReports().OnSceneRemoved(scene);
    panel.gui->Reset();
    panel.gui->Close();
  }

  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *panel.host.answers.sceneManagerObserver;
  }

  du::SmartPtr<RecordingManagedObject> manager = du::MakeSmart<RecordingManagedObject>();
  Panel panel{"root[a]", manager};
  du::SmartPtr<RecordingSelectionManager> selection = du::MakeSmart<RecordingSelectionManager>();
  du::SmartPtr<PlainShapeScene> scene = du::MakeSmart<PlainShapeScene>();
};

TEST_F(ManagedObservers, WithoutASelection_InitialiseManagesNobody)
{
  EXPECT_THAT(manager->managed, IsEmpty());
}

TEST_F(ManagedObservers, TheTwoOfTheWorldsSelection_AreManagedBeforeTheyAreRegistered)
{
  panel.world->selectionManager = selection;

  panel.gui->Initialise(panel.world);

  // Both bindings of an initialisation; the observers of the first one have gone.
  ASSERT_EQ(manager->managed.size(), 4u);
  EXPECT_FALSE(manager->managed[0].wasRegistered);
  EXPECT_FALSE(manager->managed[1].wasRegistered);
  EXPECT_THAT(manager->managed[2], IsManagedFirst(selection->selectionObserver));
  EXPECT_THAT(manager->managed[3], IsManagedFirst(selection->assocHlightObserver));
}

TEST_F(ManagedObservers, TheOneOfAShapeScene_IsManagedBeforeItIsRegistered)
{
  GetReports().OnSceneAdded(scene);

  EXPECT_THAT(manager->managed, ElementsAre(IsManagedFirst(scene->observer)));
}

TEST_F(ManagedObservers, ASceneThatIsKnownBringsNoOther)
{
  GetReports().OnSceneAdded(scene);

  GetReports().OnSceneAdded(scene);

  EXPECT_EQ(manager->managed.size(), 1u);
}

TEST_F(ManagedObservers, ASceneThatIsNoShapeSceneBringsNone)
{
  const auto plain = du::MakeSmart<PlainScene>();

  GetReports().OnSceneAdded(plain);

  EXPECT_THAT(manager->managed, IsEmpty());
  GetReports().OnSceneRemoved(plain);
}

TEST_F(ManagedObservers, AViewChange_ManagesThoseOfTheSelectionAndThenTheOneOfTheView)
{
  const auto view = MakeView<PlainShapeView>(scene);

  GetReports().OnActiveViewChanged(view);

  EXPECT_THAT(manager->managed,
              ElementsAre(IsManagedFirst(selection->selectionObserver), IsManagedFirst(selection->assocHlightObserver),
                          IsManagedFirst(view->observer)));
}

TEST_F(ManagedObservers, AViewThatIsNoShapeViewBringsNoneOfItsOwn)
{
  GetReports().OnActiveViewChanged(MakeView<PlainView>(scene));

  EXPECT_EQ(manager->managed.size(), 2u);
}

}  // namespace
