#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QAbstractItemModelTester>

#include "guitree/StructureFilteredTree.h"
#include "guitree/StructureTreeState.h"
#include "hostcheck/ProtocolChecker.h"
#include "memkernel/World.h"
#include "qthost/GuiTreeItemModel.h"
#include "testsupport/DisplaySwitches.h"
#include "testsupport/NamedTree.h"
#include "zelremote/StructureFilterInfo.h"

namespace qthosttest {

using InstancePtr = du::SmartPtr<memkernel::Instance>;

/// The rows as a view reads them: `root[plate[bolt nut] rod]`, with `...` as the last child for a placeholder.
[[nodiscard]] std::string ReadText(const qthost::GuiTreeItemModel& model, const QModelIndex& parent = {});

/// A state whose root is an assembly like any other.
class PanelState : public guitree::StructureTreeState {
public:
  explicit PanelState(guitree::GuiTree& tree) : StructureTreeState(tree, true) {}
  PanelState(const PanelState&) = delete;
  PanelState& operator=(const PanelState&) = delete;
  ~PanelState() override { _DetachStatusLookups(); }

  [[nodiscard]] bool GetDisplayRoot() override { return true; }
  [[nodiscard]] guitree::FilteredTree* CreateFilteredTree() override { return std::make_unique<Tree>(*this).release(); }

  /// Runs once, at the first match of a filter job and on its worker.
  std::function<void()> onMatch;

private:
  class Tree final : public guitree::StructureFilteredTree {
  public:
    explicit Tree(PanelState& state) : m_state(state) {}

  protected:
    void AddMatchedFilterItem(const du::SmartPtr<zelk::BaseInstance>& instance, bool matched) override
    {
      StructureFilteredTree::AddMatchedFilterItem(instance, matched);
      if (matched && m_state.onMatch) {
        std::exchange(m_state.onMatch, nullptr)();
      }
    }

  private:
    PanelState& m_state;
  };
};

/// A model with a strict tester, as the host of a panel on a whole kernel; every call is checked on its way. The tree
/// is written as text (`testsupport::NamedTree`). The panel is bound by `Initialise`.
class Stage {
public:
  explicit Stage(std::string_view treeText);
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
  /// The calls must have kept to the protocol, unless the test says otherwise.
  ~Stage();

  void Initialise();
  /// Ends the panel, as an application does that goes on without it.
  void Close();

  /// The first instance of that name, in the tree or not.
  [[nodiscard]] InstancePtr operator[](const std::string& name) const { return kernel[name]; }
  void Remove(const std::string& name) { tree.Remove(kernel[name]); }
  /// Filters by a text, and waits for the result.
  void Filter(const std::string& text);
  void EndFilter();
  [[nodiscard]] zelremote::StructureFilterInfo& GetFilter() const;
  /// Runs what is due until no filter and no load is at work.
  void Settle();
  /// Shows a scene with a loaded, visible shape for each leaf.
  void ShowScene();
  [[nodiscard]] du::SmartPtr<memkernel::ShapeInstance> GetShape(const std::string& name) const;

  [[nodiscard]] std::string GetText() const { return ReadText(model); }
  [[nodiscard]] QModelIndex FindIndex(const std::string& name) const { return model.FindIndex((*this)[name].Get()); }
  /// The names of rows in all columns of which a selection lies, in its order.
  [[nodiscard]] std::vector<std::string> GetNames(const QItemSelection& selection) const;

  /// Rows that come once more, as those of a late result do, are against the protocol of what a batch brings.
  bool checksProtocol = true;
  testsupport::DisplaySwitches switches;
  const du::SmartPtr<memkernel::World> world = du::MakeSmart<memkernel::World>(1U);
  memkernel::Tree& tree = world->GetMemTree();
  testsupport::NamedTree kernel;
  qthost::GuiTreeItemModel model;
  QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
  hostcheck::ProtocolChecker checker{&model};
  du::SmartPtr<guitree::GuiTree> gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  du::SmartPtr<PanelState> state = du::MakeSmart<PanelState>(*gui);
  du::SmartPtr<memkernel::ShapeScene> scene;
  du::SmartPtr<memkernel::ShapeView> view;
};

}  // namespace qthosttest
