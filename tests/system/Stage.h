#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Event.h"
#include "Kernels.h"
#include "Listeners.h"
#include "PanelModel.h"
#include "SecondHost.h"
#include "State.h"
#include "TreeHost.h"
#include "hostcheck/ProtocolChecker.h"
#include "testsupport/DisplaySwitches.h"

namespace systemtest {

/// A whole panel on a whole kernel, with the model of what it must show beside it. Plays events, and looks at both
/// whenever they have come to rest. With workers the model hears of nothing on the way, since nobody can tell in which
/// order a panel and its neighbour see what workers do: at rest the rows are populated anew, the scenes are reported
/// anew, and a new model looks at the same kernel.
class Stage {
public:
  struct Options {
    bool hasThreads = false;
    /// A fault that the host has on purpose.
    std::function<bool(const zelk::BaseInstance& instance)> losesRow;
    /// Makes a host that is compared as well; empty for none.
    std::function<std::unique_ptr<SecondHost>()> makeSecondHost{};
  };

  explicit Stage(const Options& options);
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
  ~Stage();

  void Play(const Event& event);
  /// Empty while the panel shows what it must.
  [[nodiscard]] const std::string& GetFault() const { return m_fault; }
  /// What was played, for guitree-show.
  [[nodiscard]] const std::vector<std::string>& GetScript() const { return m_script; }
  /// How often panel and model were compared.
  [[nodiscard]] std::size_t GetChecks() const { return m_checks; }
  [[nodiscard]] std::size_t GetMostRows() const { return m_mostRows; }
  /// How often a comparison found the panel in each situation.
  using Situations = std::map<std::string, std::size_t>;
  [[nodiscard]] const Situations& GetSituations() const { return m_situations; }

private:
  using InstancePtr = du::SmartPtr<memkernel::Instance>;
  using ShapeInstancePtr = du::SmartPtr<memkernel::ShapeInstance>;
  struct Place {
    du::SmartPtr<zelk::Scene> scene;
    /// Null for a scene of drawings.
    du::SmartPtr<memkernel::ShapeSceneContent> content;
    du::SmartPtr<zelk::View> view;
    du::SmartPtr<memkernel::SelectionManager> selection;
    bool hasScene = true;
    bool hasView = true;
    du::SmartPtr<SceneListener> listener;
  };

  // Playing.
  void _PlayOne(const Event& event);
  void _PlayEdit(const Event& event);
  void _PlayScene(const Event& event);
  void _PlayPanel(const Event& event);
  void _Add(const Event& event, const std::vector<std::string>& names, const char* verb);
  void _AddOne(const InstancePtr& parent, const std::string& product);
  void _AddMany(const Event& event);
  void _Remove(const Event& event);
  void _Rename(const Event& event);
  void _RenameProduct(const du::SmartPtr<memkernel::Product>& product, const std::string& name);
  void _ChangeProxy(const Event& event);
  void _AddScene(unsigned int kind, bool sharesSelection);
  void _RemoveScene(const Event& event);
  void _ActivateView(std::size_t number);
  void _ChangeShape(const Event& event);
  void _CreateShape(const Event& event);
  void _ChangeSelection(const Event& event, unsigned int list);
  void _SetFilter(const FilterSettings& settings);
  void _SetCollapse(bool on);
  void _SetResults(const Event& event);
  void _OpenBranch();
  [[nodiscard]] bool _Open(const InstancePtr& root);
  void _BeginBatch();
  void _EndBatch();

  // Coming to rest.
  void _RunLoop();
  void _RunTask(bool isCancelled);
  void _DrainJobs();
  void _Settle();
  void _ComeToRest();
  void _Refresh();
  template <typename Call>
  void _ForEachScene(Call call);
  void _MakeModel();
  void _BindSelection();
  void _UnbindSelection();
  void _ListenTo(Place& place);
  void _StopListeningTo(Place& place);
  void _Compare();
  void _NoteSituations();
  void _CompareRows(const std::vector<std::string>& rows, const std::vector<std::string>& expected);
  void _CompareSecond(std::vector<std::string> expected);
  /// Whether rows stand in the order of the kernel's tree.
  [[nodiscard]] bool _IsInOrder(const std::vector<std::string>& rows) const;
  void _CompareFlags();
  void _CompareLogs();
  void _Fail(const std::string& what);

  // Looking things up.
  [[nodiscard]] std::vector<InstancePtr> _ListTree() const;
  [[nodiscard]] InstancePtr _Pick(std::uint32_t number) const;
  [[nodiscard]] ShapeInstancePtr _PickShape(const Event& event, Place*& place);
  /// As a word of a script.
  [[nodiscard]] static std::string _Quote(const std::string& name);
  [[nodiscard]] std::string _NameOfNew(const std::string& product);
  [[nodiscard]] std::string _PathOf(const zelk::BaseInstance& instance) const;
  [[nodiscard]] PanelModel::View _GetView() const;
  [[nodiscard]] PanelModel::View _GetNoView() const;
  [[nodiscard]] du::SmartPtr<memkernel::Product> _GetProduct(const std::string& name);
  void _Say(const std::string& line) { m_script.push_back(line); }
  void _Remark(const Event& event, const std::string& text = {});

  testsupport::DisplaySwitches m_switches;
  Kernel m_kernel;
  TreeHost m_host;
  std::unique_ptr<SecondHost> m_second;
  TwinHost m_twin{&m_host};
  hostcheck::ProtocolChecker m_checker{&m_twin};
  du::SmartPtr<guitree::GuiTree> m_gui;
  du::SmartPtr<State> m_state;
  std::vector<Place> m_places;
  /// 0 for none.
  std::size_t m_current = 0;
  std::map<std::string, du::SmartPtr<memkernel::Product>> m_products;
  /// For ever, so that no address is used again.
  std::vector<InstancePtr> m_everMade;
  std::vector<std::unique_ptr<memkernel::ShapeSceneBatch>> m_sceneBatches;
  std::unique_ptr<memkernel::TreeBatch> m_treeBatch;

  std::unique_ptr<PanelModel> m_model;
  du::SmartPtr<TreeListener> m_treeListener;
  du::SmartPtr<SelectionListener> m_selectionListener;
  du::SmartPtr<HighlightListener> m_highlightListener;
  du::SmartPtr<memkernel::SelectionManager> m_bound;
  std::shared_ptr<const std::set<BasePtr>> m_results;

  std::vector<std::string> m_script;
  std::string m_fault;
  std::size_t m_checks = 0;
  std::size_t m_mostRows = 0;
  Situations m_situations;
};

}  // namespace systemtest
