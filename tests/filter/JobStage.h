#pragma once

#include <deque>
#include <functional>
#include <list>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "guitree/GenerateFilteredTreeTask.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeController.h"
#include "memkernel/OwnerLoop.h"
#include "memkernel/ProgressController.h"
#include "testsupport/NamedTree.h"
#include "testsupport/RecordingHost.h"
#include "testsupport/ScriptedTreeState.h"

namespace filtertest {

/// A pool whose tasks run, on the thread of the test, when the test says so.
class SteppedPool : public du::TaskPool {
public:
  std::deque<du::SmartPtr<du::Task>> waiting;
  bool acceptsTasks = true;

  bool InsertTask(const du::SmartPtr<du::Task>& task) override
  {
    if (acceptsTasks) {
      waiting.push_back(task);
    }
    return acceptsTasks;
  }
  void Run(std::size_t index)
  {
    const du::SmartPtr<du::Task> task = waiting.at(index);
    waiting.erase(waiting.begin() + static_cast<std::ptrdiff_t>(index));
    task->Run();
    task->TaskComplete();
    task->FlushResults();
  }
};

class SteppedWorld : public zelk::World {
public:
  SteppedPool pool;
  bool hasPool = true;
  du::SmartPtr<memkernel::ProgressController> progress = du::MakeSmart<memkernel::ProgressController>();

  [[nodiscard]] du::TaskPool* GetTaskPool() const override
  {
    return hasPool ? const_cast<SteppedPool*>(&pool) : nullptr;
  }
  [[nodiscard]] du::SmartPtr<zelk::ProgressController> GetProgressController() override { return progress; }
  [[nodiscard]] du::SmartPtr<zelk::Preferences> GetPreferences() override { return {}; }
};

/// Keeps the events of the jobs that it is asked to show the progress of.
class JobHost : public testsupport::RecordingHost {
public:
  std::vector<du::SmartPtr<zelk::AsyncEvent>> events;
  /// Makes the control of an event; without it there is none.
  std::function<du::SmartPtr<zelk::ProgressCtrl>(const du::SmartPtr<zelk::AsyncEvent>& event)> makeControl;

  du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event) override
  {
    events.push_back(event);
    answers.filterProgressCtrl = makeControl ? makeControl(event) : nullptr;
    return RecordingHost::CreateFilterProgressCtrl(event);
  }
};

/// A scripted state that answers what a job asks, too, and opens its protected workers.
class JobState : public testsupport::ScriptedTreeState {
public:
  using ScriptedTreeState::ScriptedTreeState;

  bool displayRoot = true;
  du::SmartPtr<du::RefCounted> additionalInfo;
  /// Without it there is no tree of an own class.
  std::function<guitree::FilteredTree*()> makeFilteredTree;
  /// Runs inside each question, with its name.
  std::function<void(const std::string& question)> onQuestion;

  [[nodiscard]] bool GetDisplayRoot() override
  {
    _Ask("GetDisplayRoot");
    return displayRoot;
  }
  [[nodiscard]] du::SmartPtr<du::RefCounted> GetAdditionalFilterInfo() const override
  {
    _Ask("GetAdditionalFilterInfo");
    return additionalInfo;
  }
  [[nodiscard]] du::SmartPtr<guitree::TreeSelectionController> GetSelController(bool forRows) const override
  {
    _Ask(forRows ? "GetSelController(true)" : "GetSelController(false)");
    return ScriptedTreeState::GetSelController(forRows);
  }
  [[nodiscard]] guitree::FilteredTree* CreateFilteredTree() override
  {
    _Ask("CreateFilteredTree");
    return makeFilteredTree ? makeFilteredTree() : nullptr;
  }

  using TreeStateBase::_ApplyInfos;
  using TreeStateBase::_VisitFilteredTreeNode;
  using TreeStateBase::GetFilteredTree;
  using TreeStateBase::InstanceInfo;
  using TreeStateBase::OnProcessingComplete;

private:
  void _Ask(const std::string& question) const
  {
    if (const auto hook = onQuestion) {
      hook(question);
    }
  }
};

/// What state and host are asked before a job is there, in order.
inline const std::vector<std::string> s_jobQuestions{
    "CreateFilterProgressCtrl", "GetAdditionalFilterInfo", "GetDisplayRoot",    "GetSelController(false)",
    "GetNonFilteredInsts2",     "GetNonFilteredInsts1",    "CreateFilteredTree"};

class CountingObserver : public guitree::FilterObserverBase {
public:
  struct Call {
    const zelk::BaseTree* tree = nullptr;
    const guitree::GuiInterface* gui = nullptr;
  };

  std::vector<Call> calls;
  /// Counted at the end of each call, for which the observer must still be there.
  std::size_t returned = 0;
  std::function<void()> onCall;

  void OnProcessingComplete(const du::SmartPtr<zelk::BaseTree>& tree, guitree::GuiInterface* gui) override
  {
    calls.push_back({tree.Get(), gui});
    if (const auto hook = onCall) {
      hook();
    }
    ++returned;
  }
};

/// Hears of the end of a tree.
class TreeWatch : public zelk::TreeObserver {
public:
  bool hasEnded = false;
  /// Runs when the tree ends.
  std::function<void()> onEnd;

  void OnDestroy() override
  {
    hasEnded = true;
    if (onEnd) {
      onEnd();
    }
  }
};

/// A panel that shows a tree, in a world whose jobs run and end step by step. Nothing is populated, nothing recorded
/// and no filter on at the start.
class JobStage {
public:
  explicit JobStage(std::string_view treeText = "root[a[b c] d]") : kernel(treeText)
  {
    zelk::World::Install(world);
    state->baseTree = kernel.Get();
    gui->SetGuiInterface(&host);
    gui->SetTreeState(state);
    gui->SetBaseTree(kernel.Get());
  }
  JobStage(const JobStage&) = delete;
  JobStage& operator=(const JobStage&) = delete;
  ~JobStage()
  {
    host.onCall = nullptr;
    gui.Reset();
    state.Reset();
    loop->Close();
    world->pool.waiting.clear();
    zelk::World::Install(nullptr);
  }

  /// Turns the filter on: it lets through what has one of the names.
  void LetThrough(std::set<std::string> names) const
  {
    state->filter.isFiltering = true;
    state->filter.filtersOut = [names = std::move(names)](const auto& instance, bool) {
      return !names.contains(std::string(instance->GetObjectName().GetView()));
    };
  }
  [[nodiscard]] guitree::TreeController& GetController() const { return *gui->GetTreeController(); }
  [[nodiscard]] SteppedPool& GetPool() const { return world->pool; }
  void Request() const { GetController().ApplyFilterToTree(state->filter, state.Get()); }
  [[nodiscard]] du::SmartPtr<CountingObserver> AddObserver() const
  {
    auto observer = du::MakeSmart<CountingObserver>();
    GetController().AddObserver(observer);
    return observer;
  }
  /// Runs what has been posted to the owner.
  void Deliver() const
  {
    while (loop->RunDue() != 0) {}
  }
  /// Runs what waits in the pool, in order, and delivers it, until nothing is left.
  void Finish() const
  {
    do {
      while (!GetPool().waiting.empty()) {
        GetPool().Run(0);
      }
    } while (loop->RunDue() != 0 || !GetPool().waiting.empty());
  }
  /// What the recorded calls have made rows of, in order. Forgets all that is recorded.
  [[nodiscard]] std::vector<std::string> TakeRows()
  {
    std::vector<std::string> rows;
    for (const std::string& call : host.TakeCalls()) {
      for (const std::string_view begin : {"InstanceCreate(node ", "InstanceCreate(", "FilterNodeCreate(node "}) {
        if (call.starts_with(begin)) {
          const std::string name = call.substr(begin.size(), call.find_first_of(",)") - begin.size());
          rows.emplace_back(begin.starts_with("Filter") ? "..." : "").append(name);
          break;
        }
      }
    }
    return rows;
  }

  testsupport::NamedTree kernel;
  JobHost host;
  du::SmartPtr<memkernel::OwnerLoop> loop = du::MakeSmart<memkernel::OwnerLoop>();
  du::SmartPtr<SteppedWorld> world = du::MakeSmart<SteppedWorld>();
  du::SmartPtr<guitree::GuiTree> gui = du::MakeSmart<guitree::GuiTree>(du::MakeSmart<dom::ManagedObject>(loop));
  du::SmartPtr<JobState> state = du::MakeSmart<JobState>(*gui);
};

/// A result as text: "root[a[b] ...]".
[[nodiscard]] inline std::string Show(const guitree::FilteredTree::Node* node)
{
  if (!node) {
    return "none";
  }
  std::string text = node->instance ? std::string(node->instance->GetObjectName().GetView()) : "...";
  for (const auto* child = node->firstChild; child; child = child->nextSibling) {
    text += child == node->firstChild ? '[' : ' ';
    text += Show(child);
  }
  return node->firstChild ? text + "]" : text;
}

[[nodiscard]] inline std::string Show(const du::SmartPtr<guitree::FilteredTree>& tree)
{
  return tree ? Show(tree->GetRoot()) : "no tree";
}

}  // namespace filtertest
