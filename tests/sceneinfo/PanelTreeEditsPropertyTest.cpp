// What a panel's rows show when the tree is edited as well. The states of parents then depend on the order of events,
// so the model hears of all of them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "ScenePlayer.h"
#include "ShapeLoadingFixture.h"

namespace sceneinfotest {
namespace {

using testing::ElementsAre;

/// Edits the tree that the player of the scene looks at.
class TreePlayer {
public:
  TreePlayer() = default;
  TreePlayer(const TreePlayer&) = delete;
  TreePlayer& operator=(const TreePlayer&) = delete;
  ~TreePlayer() { m_batch.reset(); }

  void PlayOne()
  {
    static const std::vector<std::pair<std::size_t, void (TreePlayer::*)()>> s_events{
        {6, &TreePlayer::_Create},  {6, &TreePlayer::_EndLoad},     {6, &TreePlayer::_ToggleVisible},
        {2, &TreePlayer::_Unload},  {4, &TreePlayer::_Add},         {2, &TreePlayer::_Remove},
        {2, &TreePlayer::_Expand},  {2, &TreePlayer::_Collapse},    {1, &TreePlayer::_Rename},
        {3, &TreePlayer::_TurnRun}, {3, &TreePlayer::_TurnTreeRun}, {1, &TreePlayer::_Show},
        {1, &TreePlayer::_AddMany},
    };
    (this->*DrawEvent(s_events))();
    scenes.RunLoop();
  }
  [[nodiscard]] bool IsInRun() const { return m_batch || scenes.IsInRun(); }

  ScenePlayer scenes;

private:
  [[nodiscard]] memkernel::Tree& _GetTree() const { return scenes.panel.GetTree(); }

  void _Create()
  {
    scenes.CreateShapeInstance(*rc::gen::weightedElement<zelk::ShapeDataStatus>(
        {{4, zelk::ShapeDataLoaded}, {2, zelk::ShapeDataNone}, {1, zelk::ShapeDataFailed}}));
  }
  void _EndLoad() { scenes.EndLoad(zelk::ShapeDataLoaded); }
  void _ToggleVisible() { scenes.ToggleVisible(); }
  void _Unload() { scenes.RemoveShapeInstance(); }
  void _TurnRun() { scenes.TurnRun(); }
  void _Show() { scenes.ShowScene(DrawBelow(2) == 0); }
  void _Add() { scenes.Grow(1 + DrawBelow(3)); }
  /// More than are made one by one, if a run is open.
  void _AddMany() { scenes.Grow(210); }
  void _Remove()
  {
    if (scenes.instances.size() > 1) {
      _GetTree().Remove(scenes.instances[1 + DrawBelow(scenes.instances.size() - 1)]);
      _DropWhatIsGone();
    }
  }
  void _Expand() { _GetTree().ExpandProxy(scenes.Pick()); }
  void _Collapse()
  {
    _GetTree().CollapseProxy(scenes.Pick());
    _DropWhatIsGone();
  }
  void _Rename() { _GetTree().Rename(scenes.Pick(), du::Symbol(std::to_string(DrawBelow(1000)).c_str())); }
  void _TurnTreeRun()
  {
    if (m_batch) {
      m_batch.reset();
    } else {
      m_batch = std::make_unique<memkernel::TreeBatch>(_GetTree());
    }
  }
  void _DropWhatIsGone()
  {
    std::erase_if(scenes.instances, [](const auto& instance) { return !instance->IsInTree(); });
  }

  std::unique_ptr<memkernel::TreeBatch> m_batch;
};

RC_GTEST_PROP(PanelTreeEditsProperty, AfterAnyEventsOfSceneAndTree_TheLogIsTheModelsAndRowsShowIt, ())
{
  TreePlayer player;
  const auto count = 1 + DrawBelow(80);
  for (std::size_t i = 0; i < count; ++i) {
    player.PlayOne();

    const guitree::SceneInfoLog& log = player.scenes.GetLog();
    RC_ASSERT(ScenePlayer::ToMap(log.GetVisibleMap()) == player.scenes.model.GetLog().GetStates());
    RC_ASSERT(ScenePlayer::ToMap(log.GetVisibleChangeMap()) == player.scenes.model.GetLog().GetChanges());
    if (player.IsInRun()) {
      continue;
    }
    RC_ASSERT(player.scenes.host.rows.size() == player.scenes.instances.size());
    for (const auto& [instance, row] : player.scenes.host.rows) {
      RC_ASSERT(row.state == RowHost::GetState(player.scenes.panel.gui->GetCurrentLog()->GetVisibleMap(), instance));
    }
  }
}

class ForgottenInstances : public ShapeLoadingFixture {
protected:
  ShapeInstance ShowLoaded(const char* name)
  {
    auto shapeInstance = du::MakeSmart<testsupport::PlainShapeInstance>(panel.kernel[name]);
    shapeInstance->status = zelk::ShapeDataLoaded;
    scene->observer->OnShapeInstanceCreate(shapeInstance);
    return shapeInstance;
  }
};

TEST_F(ForgottenInstances, HaveNoStateButTheirChangesStayAndAreDelivered)
{
  const ShapeInstance a = ShowLoaded("a");

  panel.gui->RemoveFromLogs(panel.kernel["a"]);
  scene->observer->OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateVisAndTypeIconChanges(visible={root: 4}, visibleChanges={a: "
                                                  "18, root: 66}, typeIcons=yes, typeIconChanges={a: 1})"));
}

TEST_F(ForgottenInstances, HearNothingOfTheSameStateBeforeTheNextDeliverySinceTheirChangeStays)
{
  const ShapeInstance a = ShowLoaded("a");
  panel.gui->RemoveFromLogs(panel.kernel["a"]);

  scene->observer->OnShapeInstanceVisibility(a, true);
  EXPECT_EQ(GetState("a"), guitree::VisibleStateHidden);

  scene->observer->OnEndUpdate();
  scene->observer->OnShapeInstanceVisibility(a, true);
  EXPECT_EQ(GetState("a"), guitree::VisibleStateVisible);
}

}  // namespace
}  // namespace sceneinfotest
