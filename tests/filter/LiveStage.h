#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "guitree/TreeController.h"
#include "memkernel/World.h"
#include "testsupport/ScriptedHost.h"
#include "testsupport/ScriptedWorldTreeState.h"

namespace filtertest {

/// Keeps the rows of a panel, and books its jobs by their events.
class BookingHost : public testsupport::ScriptedHost {
public:
  using ScriptedHost::InstanceCreate;

  /// Of the jobs under way, oldest first.
  std::vector<du::SmartPtr<zelk::AsyncEvent>> underWay;
  std::size_t started = 0;
  /// How often the last job under way has ended.
  std::size_t bursts = 0;
  bool isCalculating = false;
  int openBrackets = 0;
  /// By instance, with the name of now and what stands above.
  std::map<const zelk::BaseInstance*, const zelk::BaseInstance*> rows;
  /// In the order in which they came.
  std::vector<du::SmartPtr<zelk::BaseInstance>> order;

  du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event) override
  {
    ++started;
    underWay.push_back(event);
    const zelk::AsyncEvent* const identity = event.Get();
    event->AddProgressListener([this, identity](unsigned char /*percent*/, bool isCompleted) {
      if (isCompleted) {
        std::erase_if(underWay, [identity](const auto& entry) { return entry.Get() == identity; });
        bursts += underWay.empty() ? 1U : 0U;
      }
    });
    return {};
  }
  void StartTreeUpdate() override { ++openBrackets; }
  void FinishTreeUpdate() override { --openBrackets; }
  void SetTreeCalculating(bool calculating) override { isCalculating = calculating; }
  void ClearTree() override
  {
    rows.clear();
    order.clear();
  }
  void Reset() override { ClearTree(); }
  void InstanceCreate(guitree::FilteredTree::Node* node,
                      const du::SmartPtr<guitree::TreeSelectionController>& /*controller*/,
                      bool /*assocHlight*/) override
  {
    _Add(node->instance, node->parent ? node->parent->instance : nullptr);
  }
  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      const du::SmartPtr<guitree::TreeSelectionController>& /*controller*/,
                      bool /*assocHlight*/) override
  {
    _Add(instance.Get(), parent.Get());
  }
  void InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                      const du::SmartPtr<zelk::BaseInstance>& /*parent*/, bool /*repopulatePending*/) override
  {
    rows.erase(instance.Get());
    std::erase(order, instance);
  }

private:
  void _Add(zelk::BaseInstance* instance, const zelk::BaseInstance* parent)
  {
    rows[instance] = parent;
    order.emplace_back(instance);
  }
};

class BookingObserver : public guitree::FilterObserverBase {
public:
  std::size_t count = 0;

  void OnProcessingComplete(const du::SmartPtr<zelk::BaseTree>& /*tree*/, guitree::GuiInterface* /*gui*/) override
  {
    ++count;
  }
};

/// A panel on the tree of a world with workers of its own.
class LiveStage {
public:
  explicit LiveStage(std::size_t instances)
  {
    world->InstallForProcess();
    part = GetTree().CreateProduct({.name = "part"});
    all.push_back(GetTree().CreateRoot(part, "root"));
    for (std::size_t i = 1; i < instances; ++i) {
      all.push_back(GetTree().AddChild(all[(i - 1) / 4], part, MakeName(i)));
    }
    gui->SetGuiInterface(&host);
    gui->SetTreeState(state);
    gui->GetTreeController()->AddObserver(observer);
  }
  LiveStage(const LiveStage&) = delete;
  LiveStage& operator=(const LiveStage&) = delete;
  ~LiveStage()
  {
    if (gui) {
      gui->Reset();
      gui->Close();
    }
    gui.Reset();
    state.Reset();
    all.clear();
    world->Shutdown();
  }

  /// One of seven names, with the number of the instance behind it.
  [[nodiscard]] static du::Symbol MakeName(std::size_t number)
  {
    static constexpr const char* s_names[] = {"bolt", "nut", "plate", "shaft", "gear", "ring", "cover"};
    return du::Symbol(std::string_view(s_names[number % 7] + std::to_string(number)));
  }
  [[nodiscard]] memkernel::Tree& GetTree() const { return world->GetMemTree(); }
  [[nodiscard]] guitree::TreeController& GetController() const { return *gui->GetTreeController(); }
  /// Turns the filter on: for names that contain a text.
  void SetFilterText(const std::string& text) const
  {
    state->filter.isFiltering = true;
    state->filter.filtersOut = [text](const auto& instance, bool) {
      return instance->GetObjectName().GetView().find(text) == std::string_view::npos;
    };
  }
  void RunTurn() const { world->GetLoop().RunDue(); }
  /// Runs the loop until no job is under way.
  [[nodiscard]] bool RunUntilIdle() const
  {
    return world->GetLoop().RunUntil([this] { return host.underWay.empty(); });
  }
  /// The rows that a filter for a text should make, in their order.
  [[nodiscard]] std::vector<const zelk::BaseInstance*> ListExpectedRows(const std::string& text) const
  {
    std::vector<const zelk::BaseInstance*> expected;
    const auto root = GetTree().GetRootInstance();
    if (root && !_AddExpected(*root, text, expected)) {
      expected.push_back(root.Get());
    }
    return expected;
  }
  [[nodiscard]] std::vector<const zelk::BaseInstance*> ListRows() const
  {
    std::vector<const zelk::BaseInstance*> rows;
    for (const auto& row : host.order) {
      rows.push_back(row.Get());
    }
    return rows;
  }
  /// Whether controller, state and observer say what the books say. Not inside a callback.
  [[nodiscard]] bool IsInStep() const
  {
    return GetController().IsBusy() == !host.underWay.empty() && observer->count == host.bursts
           && host.openBrackets == 0;
  }

  BookingHost host;
  du::SmartPtr<memkernel::World> world = du::MakeSmart<memkernel::World>(2U);
  du::SmartPtr<guitree::GuiTree> gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  du::SmartPtr<testsupport::ScriptedWorldTreeState> state = du::MakeSmart<testsupport::ScriptedWorldTreeState>(*gui);
  du::SmartPtr<BookingObserver> observer = du::MakeSmart<BookingObserver>();
  du::SmartPtr<memkernel::Product> part;
  /// What is in the tree, as long as the test keeps it up to date.
  std::vector<du::SmartPtr<memkernel::Instance>> all;

private:
  /// True if the branch has a match, in which case its rows are in.
  static bool _AddExpected(const zelk::BaseInstance& instance, const std::string& text,
                           std::vector<const zelk::BaseInstance*>& out)
  {
    const std::size_t place = out.size();
    out.push_back(&instance);
    bool isKept = instance.GetObjectName().GetView().find(text) != std::string_view::npos;
    std::vector<du::SmartPtr<zelk::BaseInstance>> children;
    instance.GetBaseChildren(children);
    for (const auto& child : children) {
      isKept |= _AddExpected(*child, text, out);
    }
    if (!isKept) {
      out.resize(place);
    }
    return isKept;
  }
};

}  // namespace filtertest
