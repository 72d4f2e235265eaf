#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "JobStage.h"
#include "guitree/StructureTreeState.h"
#include "memkernel/Preferences.h"
#include "testsupport/DisplaySwitches.h"
#include "testsupport/PlainScenes.h"
#include "zelremote/StructureFilterInfo.h"

namespace structuretest {

/// A host that tells views apart by their names, which are their types.
class ViewTypeHost : public filtertest::JobHost {
public:
  [[nodiscard]] du::Symbol GetViewTypeString(const du::SmartPtr<zelk::View>& view) const override
  {
    const du::Symbol answer = JobHost::GetViewTypeString(view);
    return view ? view->GetObjectName() : answer;
  }
};

class StructureWorld : public filtertest::SteppedWorld {
public:
  du::SmartPtr<memkernel::Preferences> preferences = du::MakeSmart<memkernel::Preferences>();

  [[nodiscard]] du::SmartPtr<zelk::Preferences> GetPreferences() override { return preferences; }
};

/// Opens the workers of the state, and counts its populations.
class OpenStructureState : public guitree::StructureTreeState {
public:
  using StructureTreeState::_VisitFilteredTreeNode;
  using StructureTreeState::GetFilteredTree;
  using StructureTreeState::StructureTreeState;

  /// What was passed as `keepExpanded`, for each population.
  std::vector<bool> populations;
  /// In place of the state itself.
  std::function<guitree::FilteredTree*()> makeFilteredTree;
  /// A controller in place of that of the world.
  du::SmartPtr<testsupport::ScriptedSelectionController> selController;

  void PopulateTree(bool keepExpanded) override
  {
    populations.push_back(keepExpanded);
    StructureTreeState::PopulateTree(keepExpanded);
  }
  [[nodiscard]] guitree::FilteredTree* CreateFilteredTree() override
  {
    return makeFilteredTree ? makeFilteredTree() : StructureTreeState::CreateFilteredTree();
  }
  [[nodiscard]] du::SmartPtr<guitree::TreeSelectionController> GetSelController(bool forRows) const override
  {
    return selController ? selController : StructureTreeState::GetSelController(forRows);
  }
};

/// A structure panel on a tree, in a world whose jobs run and end step by step. Nothing is populated or recorded, and
/// no filter made, at the start. The display switches are put back at the end.
///
/// Filters spare the root, which is not displayed, and with it what is right below: a tree has one instance there.
class StructureStage {
public:
  explicit StructureStage(std::string_view treeText = "root[plate[nut1 bolt frame[nut2 nut3]]]",
                          bool allowResultsFilter = true)
      : kernel(treeText), state(du::MakeSmart<OpenStructureState>(*gui, allowResultsFilter))
  {
    world->tree = kernel.Get();
    zelk::World::Install(world);
    gui->SetGuiInterface(&host);
    gui->SetTreeState(state);
    gui->SetBaseTree(kernel.Get());
  }
  StructureStage(const StructureStage&) = delete;
  StructureStage& operator=(const StructureStage&) = delete;
  ~StructureStage()
  {
    host.onCall = nullptr;
    if (state) {
      state->Reset();
    }
    gui.Reset();
    state.Reset();
    loop->Close();
    world->pool.waiting.clear();
    zelk::World::Install(nullptr);
  }

  /// The filter of a view, or of no view.
  [[nodiscard]] zelremote::StructureFilterInfo& GetFilter(const du::SmartPtr<zelk::View>& view = {}) const
  {
    return dynamic_cast<zelremote::StructureFilterInfo&>(state->GetFilter(view));
  }
  /// Runs the jobs that wait, in order, and delivers their ends, until nothing is left.
  void Finish() const
  {
    do {
      while (!world->pool.waiting.empty()) {
        world->pool.Run(0);
      }
    } while (loop->RunDue() != 0 || !world->pool.waiting.empty());
  }
  /// Populates with the filter for a text, and ends with what its result has made of the rows.
  void Show(const std::string& text)
  {
    GetFilter().SetText(text);
    state->PopulateTree(false);
    static_cast<void>(host.TakeCalls());
    Finish();
  }
  /// The same in list presentation.
  void ShowAsList(const std::string& text)
  {
    GetFilter().listMode = 1;
    Show(text);
  }
  void SetFlag(const std::string& name, memkernel::InstanceFlag flag) const
  {
    kernel.Get()->SetFlags(kernel[name], flag, true);
  }
  void SetMaterial(const std::string& name, const char* material) const
  {
    kernel.Get()->SetProperty(kernel[name], "Data", "Material", material);
  }
  [[nodiscard]] du::SmartPtr<guitree::FilteredTree> GetResult() const
  {
    du::SmartPtr<guitree::FilteredTree> result;
    state->GetFilteredTree(result);
    return result;
  }
  /// The recorded calls that begin so. Forgets all that is recorded.
  [[nodiscard]] std::vector<std::string> TakeCalls(std::string_view begin)
  {
    std::vector<std::string> calls = host.TakeCalls();
    std::erase_if(calls, [begin](const std::string& call) { return !call.starts_with(begin); });
    return calls;
  }
  /// What the recorded calls have made rows of, in order: "bolt" for the row of a node, "plate/bolt" for one with a
  /// parent, "...plate" for a placeholder. Forgets all that is recorded.
  [[nodiscard]] std::vector<std::string> TakeRows()
  {
    std::vector<std::string> rows;
    for (const std::string& call : host.TakeCalls()) {
      if (call.starts_with("InstanceCreate(node ")) {
        rows.push_back(_Cut(call, "node ", ","));
      } else if (call.starts_with("InstanceCreate(")) {
        rows.push_back(_Cut(call, "parent=", ",") + "/" + _Cut(call, "(", ","));
      } else if (call.starts_with("FilterNodeCreate(")) {
        rows.push_back("..." + _Cut(call, "node ", ")"));
      }
    }
    return rows;
  }
  /// Forgets the calls so far and shows the whole tree.
  void PopulateWithoutFilter()
  {
    static_cast<void>(host.TakeCalls());
    GetFilter().ClearCriteria();
    state->PopulateTree(false);
  }
  /// Calls `act` inside the first call of the host that begins so.
  void OnceIn(std::string begin, std::function<void()> act)
  {
    host.onCall = [this, begin = std::move(begin), act = std::move(act)](const std::string& line) {
      if (line.starts_with(begin)) {
        const std::function<void()> once = act;
        host.onCall = nullptr;
        once();
      }
    };
  }

  const testsupport::DisplaySwitches switches;
  testsupport::NamedTree kernel;
  ViewTypeHost host;
  du::SmartPtr<memkernel::OwnerLoop> loop = du::MakeSmart<memkernel::OwnerLoop>();
  du::SmartPtr<StructureWorld> world = du::MakeSmart<StructureWorld>();
  du::SmartPtr<guitree::GuiTree> gui = du::MakeSmart<guitree::GuiTree>(du::MakeSmart<dom::ManagedObject>(loop));
  du::SmartPtr<OpenStructureState> state;

private:
  [[nodiscard]] static std::string _Cut(const std::string& call, const std::string& begin, const std::string& end)
  {
    const std::size_t from = call.find(begin) + begin.size();
    return call.substr(from, call.find(end, from) - from);
  }
};

[[nodiscard]] inline du::SmartPtr<testsupport::PlainView> MakeView(const char* type)
{
  auto view = testsupport::MakeView<testsupport::PlainView>(nullptr);
  view->settings.name = type;
  return view;
}

}  // namespace structuretest
