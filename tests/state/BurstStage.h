#pragma once

#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "memkernel/SelectionManager.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/RowsHost.h"
#include "testsupport/WorldPanel.h"

namespace bursttest {

/// A panel that shows a scene whose changes wait, on a host that keeps rows and behind which calls are recorded.
/// Nothing is recorded at the start.
struct Stage {
  Stage()
  {
    const auto proxy = panel.GetTree().CreateProduct({.name = "proxy", .flags = memkernel::InstanceProxy});
    closed = panel.GetTree().AddChild(panel.kernel["root"], proxy);
    panel.GetTree().AddChild(closed, panel.kernel["z"]->GetProduct());
    panel.world->selectionManager = selection;
    scene->selectionManager = selection;
    panel.gui->SetGuiInterface(&rows);
    panel.Initialise();
    panel.observer.Reset();
    GetReports().OnSceneAdded(scene);
    GetReports().OnActiveViewChanged(view);
    panel.gui->GetLog(scene)->SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);
    static_cast<void>(panel.host.TakeCalls());
  }
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
  ~Stage()
  {
    panel.host.onCall = nullptr;
    GetReports().OnSceneRemoved(scene);
    if (panel.gui) {
      // The selection dies first.
      panel.gui->Reset();
    }
  }

  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *panel.host.answers.sceneManagerObserver;
  }
  /// The rows that another panel on the same tree has from a population alone.
  [[nodiscard]] std::vector<std::string> ListFreshRows() const
  {
    testsupport::ScriptedHost silent;
    testsupport::RowsHost fresh(&silent);
    const auto gui = du::MakeSmart<guitree::GuiTree>(nullptr);
    const auto state = du::MakeSmart<testsupport::ScriptedWorldTreeState>(*gui);
    state->hidden = hidden;
    gui->SetGuiInterface(&fresh);
    gui->SetTreeState(state);
    gui->SetBaseTree(panel.kernel.Get());
    state->PopulateTree(false);
    return fresh.GetSortedRows();
  }

  testsupport::WorldPanel panel{"root[a[x y] b[z]]"};
  testsupport::RowsHost rows{&panel.host};
  du::SmartPtr<memkernel::SelectionManager> selection = du::MakeSmart<memkernel::SelectionManager>(nullptr);
  /// A proxy with a child.
  du::SmartPtr<memkernel::Instance> closed;
  std::set<const zelk::BaseInstance*> hidden;
  du::SmartPtr<testsupport::PlainShapeScene> scene = du::MakeSmart<testsupport::PlainShapeScene>();
  du::SmartPtr<testsupport::PlainShapeView> view = testsupport::MakeView<testsupport::PlainShapeView>(scene);
  du::SmartPtr<testsupport::PlainShapeView> otherView = testsupport::MakeView<testsupport::PlainShapeView>(scene);
};

struct Burst {
  const char* name;
  std::function<void(Stage&)> run;
};

inline void PrintTo(const Burst& burst, std::ostream* out)
{
  *out << burst.name;
}

/// The bursts that the kernel can bring, one for each way in which they can end.
[[nodiscard]] std::vector<Burst> ListBursts();

/// What was open at the end, and how often a bracket was finished that was not open.
struct Brackets {
  int open = 0;
  int unmatchedFinishes = 0;
};

[[nodiscard]] Brackets CountBrackets(const std::vector<std::string>& calls);

}  // namespace bursttest
