#include "BurstStage.h"

#include <utility>

namespace bursttest {
namespace {

void CreateTwo(Stage& stage)
{
  const memkernel::TreeBatch batch(stage.panel.GetTree());
  stage.panel.kernel.Add("a", "n");
  stage.panel.kernel.Add("n", "m");
}

void RemoveBranch(Stage& stage)
{
  stage.panel.GetTree().Remove(stage.panel.kernel["a"]);
}

/// Without a record of it.
void Hide(Stage& stage, const std::string& name)
{
  stage.hidden = {stage.panel.kernel[name].Get()};
  stage.panel.state->hidden = stage.hidden;
  const auto hook = std::exchange(stage.panel.host.onCall, nullptr);
  stage.panel.state->PopulateTree(false);
  static_cast<void>(stage.panel.host.TakeCalls());
  stage.panel.host.onCall = hook;
}

void RemoveHiddenBranch(Stage& stage)
{
  Hide(stage, "a");
  RemoveBranch(stage);
}

void Rename(Stage& stage)
{
  stage.panel.GetTree().Rename(stage.panel.kernel["a"], "renamed");
}

void RenameInNoPlace(Stage& stage)
{
  stage.panel.host.answers.checkAndUpdateNodeNameAndType = true;
  Rename(stage);
}

void Expand(Stage& stage)
{
  stage.panel.GetTree().ExpandProxy(stage.closed);
}

void Collapse(Stage& stage)
{
  const memkernel::TreeBatch batch(stage.panel.GetTree());
  stage.panel.GetTree().ExpandProxy(stage.closed);
  stage.panel.GetTree().CollapseProxy(stage.closed);
}

void TurnToNode(Stage& stage)
{
  stage.panel.host.answers.checkAndUpdateNodeNameAndType = true;
  stage.panel.GetTree().TurnProxyToNode(stage.closed);
}

void AddViewable(Stage& stage)
{
  stage.panel.GetTree().AddViewable(stage.panel.kernel["b"], stage.panel.kernel["z"]);
}

void LoadProperties(Stage& stage)
{
  stage.panel.host.answers.isShowingAltPartNames = true;
  stage.panel.GetTree().NotifyPropertyGroupsLoaded();
}

void ChangeNames(Stage& stage)
{
  stage.panel.GetTree().NotifyDisplayNamesChanged();
}

void ChangeSortedNames(Stage& stage)
{
  stage.panel.state->filter.sortColumn = {"", "Display Name"};
  stage.panel.GetTree().NotifyDisplayNamesChanged();
}

void ChangeSortedColumns(Stage& stage)
{
  stage.panel.state->filter.sortColumn = {"", "Mass"};
  stage.panel.GetTree().NotifyTreeColumnsChanged();
}

void Mix(Stage& stage)
{
  const memkernel::TreeBatch batch(stage.panel.GetTree());
  CreateTwo(stage);
  Rename(stage);
  Expand(stage);
  AddViewable(stage);
  stage.panel.GetTree().Remove(stage.panel.kernel["b"]);
  stage.panel.kernel.Add("a", "late");
}

/// Edits that reach the host, then many that it does not hear of, and one too many.
void Exceed(Stage& stage)
{
  Hide(stage, "y");
  const memkernel::TreeBatch batch(stage.panel.GetTree());
  CreateTwo(stage);
  Rename(stage);
  for (int i = 0; i < 197; ++i) {
    stage.panel.GetTree().Rename(stage.panel.kernel["y"], i % 2 == 0 ? "even" : "odd");
  }
  stage.panel.GetTree().Remove(stage.panel.kernel["z"]);
}

}  // namespace

std::vector<Burst> ListBursts()
{
  return {{"CreateTwo", CreateTwo},
          {"RemoveBranch", RemoveBranch},
          {"RemoveHiddenBranch", RemoveHiddenBranch},
          {"Rename", Rename},
          {"RenameInNoPlace", RenameInNoPlace},
          {"Expand", Expand},
          {"Collapse", Collapse},
          {"TurnToNode", TurnToNode},
          {"AddViewable", AddViewable},
          {"LoadProperties", LoadProperties},
          {"ChangeNames", ChangeNames},
          {"ChangeSortedNames", ChangeSortedNames},
          {"ChangeSortedColumns", ChangeSortedColumns},
          {"Mix", Mix},
          {"Exceed", Exceed}};
}

Brackets CountBrackets(const std::vector<std::string>& calls)
{
  Brackets brackets;
  for (const std::string& line : calls) {
    if (line == "StartTreeUpdate()") {
      ++brackets.open;
    } else if (line == "FinishTreeUpdate()" && brackets.open > 0) {
      --brackets.open;
    } else if (line == "FinishTreeUpdate()") {
      ++brackets.unmatchedFinishes;
    }
  }
  return brackets;
}

}  // namespace bursttest
