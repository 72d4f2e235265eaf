// What a panel's rows show, after any events of a kernel, held against a model that hears the same events.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "ScenePlayer.h"

namespace sceneinfotest {
namespace {

using Event = void (*)(ScenePlayer&);
using Events = std::vector<std::pair<std::size_t, Event>>;

void Create(ScenePlayer& player)
{
  player.CreateShapeInstance(*rc::gen::weightedElement<zelk::ShapeDataStatus>(
      {{4, zelk::ShapeDataLoaded}, {4, zelk::ShapeDataNone}, {1, zelk::ShapeDataPartial}, {1, zelk::ShapeDataFailed}}));
}

void EndLoad(ScenePlayer& player)
{
  player.EndLoad(*rc::gen::weightedElement<zelk::ShapeDataStatus>(
      {{5, zelk::ShapeDataLoaded}, {1, zelk::ShapeDataPartial}, {1, zelk::ShapeDataNone}, {1, zelk::ShapeDataFailed}}));
}

void ShowEither(ScenePlayer& player)
{
  player.ShowScene(DrawBelow(2) == 0);
}

/// Those that leave the tree as it is.
const Events s_sceneEvents{
    {6, Create},
    {6, EndLoad},
    {8, [](ScenePlayer& player) { player.ToggleVisible(); }},
    {3, [](ScenePlayer& player) { player.RemoveShapeInstance(); }},
    {2, [](ScenePlayer& player) { player.ToggleThumbnail(); }},
    {1, [](ScenePlayer& player) { player.ToggleCompared(); }},
    {4, [](ScenePlayer& player) { player.TurnRun(); }},
    {2, ShowEither},
};

/// Those whose icons differ by the loaded form alone.
const Events s_loadEvents{
    {6, [](ScenePlayer& player) { player.CreateShapeInstance(zelk::ShapeDataNone); }},
    {2, [](ScenePlayer& player) { player.CreateShapeInstance(zelk::ShapeDataLoaded); }},
    {6, [](ScenePlayer& player) { player.EndLoad(zelk::ShapeDataLoaded); }},
    {1, [](ScenePlayer& player) { player.EndLoad(zelk::ShapeDataNone); }},
    {3, [](ScenePlayer& player) { player.RemoveShapeInstance(); }},
    {3, [](ScenePlayer& player) { player.TurnRun(); }},
    {2, ShowEither},
};

void PlayOne(ScenePlayer& player, const Events& events)
{
  DrawEvent(events)(player);
  player.RunLoop();
}

/// The difference of two visible maps, as change words.
[[nodiscard]] WalkingModel::States Compare(const WalkingModel::States& before, const WalkingModel::States& now)
{
  const auto stateIn = [](const WalkingModel::States& states, const zelk::BaseInstance* instance) {
    const auto known = states.find(instance);
    return known == states.end() ? 2 : known->second;
  };
  WalkingModel::States words;
  for (const auto* states : {&before, &now}) {
    for (const auto& [instance, state] : *states) {
      if (stateIn(before, instance) != stateIn(now, instance)) {
        words[instance] = stateIn(now, instance) * 16 + stateIn(before, instance);
      }
    }
  }
  return words;
}

void RequireThatTheLogIsTheModels(const ScenePlayer& player)
{
  RC_ASSERT(ScenePlayer::ToMap(player.GetLog().GetVisibleMap()) == player.model.GetLog().GetStates());
  RC_ASSERT(ScenePlayer::ToMap(player.GetLog().GetVisibleChangeMap()) == player.model.GetLog().GetChanges());
}

/// Outside of any run, all that has changed has been told.
void RequireThatRowsShowTheCurrentLog(const ScenePlayer& player)
{
  const auto& visibleMap = player.panel.gui->GetCurrentLog()->GetVisibleMap();
  RC_ASSERT(player.host.rows.size() == player.instances.size());
  for (const auto& [instance, row] : player.host.rows) {
    RC_ASSERT(row.state == RowHost::GetState(visibleMap, instance));
  }
}

RC_GTEST_PROP(PanelVisibilityProperty, OnATreeThatStays_StatesAreThoseWorkedOutFromTheLeavesUpWhateverTheOrder, ())
{
  ScenePlayer player;
  const auto count = 1 + DrawBelow(120);
  for (std::size_t i = 0; i < count; ++i) {
    PlayOne(player, s_sceneEvents);

    const auto states = ScenePlayer::ToMap(player.GetLog().GetVisibleMap());
    RC_ASSERT(states == player.model.WorkOutFromScratch(*player.instances.front()));
    RequireThatTheLogIsTheModels(player);
  }
}

RC_GTEST_PROP(PanelVisibilityProperty, OnATreeThatStays_ChangesAreTheDifferenceSinceTheLastDeliveryAndNothingElse, ())
{
  ScenePlayer player;
  const auto count = 1 + DrawBelow(120);
  for (std::size_t i = 0; i < count; ++i) {
    PlayOne(player, s_sceneEvents);

    const auto states = ScenePlayer::ToMap(player.GetLog().GetVisibleMap());
    const auto changes = ScenePlayer::ToMap(player.GetLog().GetVisibleChangeMap());
    RC_ASSERT(changes == Compare(player.GetDelivered(), states));
    RC_ASSERT(!player.host.wasContradicted);
    if (!player.IsInRun()) {
      RequireThatRowsShowTheCurrentLog(player);
      RC_ASSERT(!player.IsShown() || changes.empty());
    }
  }
}

RC_GTEST_PROP(PanelVisibilityProperty, AsLongAsIconsDifferByTheirLoadedFormAlone_RowsShowThoseOfTheLog, ())
{
  ScenePlayer player;
  const auto count = 1 + DrawBelow(120);
  for (std::size_t i = 0; i < count; ++i) {
    PlayOne(player, s_loadEvents);

    if (player.IsInRun() || !player.IsShown()) {
      continue;
    }
    for (const auto& [instance, row] : player.host.rows) {
      int icon = 0;
      RC_ASSERT(player.GetLog().GetTypeIconMap()._Get(instance, icon));
      RC_ASSERT(row.icon == icon);
    }
  }
}

}  // namespace
}  // namespace sceneinfotest
