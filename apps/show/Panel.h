#pragma once

#include <cstddef>
#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "FilterHold.h"
#include "Options.h"
#include "PanelHost.h"
#include "guitree/GuiTree.h"
#include "guitree/StructureTreeState.h"
#include "hostcheck/CallTracer.h"
#include "hostcheck/ProtocolChecker.h"
#include "memkernel/World.h"
#include "script/PanelControl.h"
#include "script/Stage.h"

/// One structure panel over a world and a stage, filled when it is made: a text host, and before it what the options
/// ask for. It has the shapes of the stage loaded; the filter of the options begins when they are all there, since it
/// may look at them. Follows the stage while it lives, and has the filter give way to edits of the tree. Ends before
/// world and stage.
class Panel final : public script::PanelControl {
public:
  Panel(const du::SmartPtr<memkernel::World>& world, script::Stage& stage, const Options& options);
  Panel(const Panel&) = delete;
  Panel& operator=(const Panel&) = delete;
  ~Panel() override;

  /// Goes on with what is due on the owner's thread until all shapes are loaded and no filter is at work any more, or
  /// until one is held; what takes longer shows how far it is where stderr is a terminal. Ctrl-C cancels the filter, or
  /// leaves the loads to the end of the world, and the answer is false.
  [[nodiscard]] bool Settle();
  /// Filters once more where an edit has ended a filter at work. To be called when the edits of a batch are all in.
  void CatchUp();
  [[nodiscard]] bool IsFiltering() const;
  [[nodiscard]] bool IsLoading() const;

  void Print(std::ostream& out) const;
  /// With `--trace` the calls since the last time, one a line; empty without.
  [[nodiscard]] std::string TakeTrace();
  [[nodiscard]] std::size_t GetRowCount() const { return m_host.GetRowCount(); }
  /// The panel starts in sight.
  void SetInSight(bool isInSight) override;
  void SetViewType(const du::SmartPtr<zelk::View>& view, const std::string& type) override;
  void PrepareView(const du::SmartPtr<zelk::View>& view) override;
  void SetShowingBodies(bool on) override;
  void SetCollapsing(bool on) override;
  [[nodiscard]] bool IsCollapsing() const override { return guitree::WorldTreeState::IsCollapsingInstances(); }
  void SetFilter(const FilterSettings& settings) override;
  [[nodiscard]] const FilterSettings& GetFilter() const override;
  void SetResults(const du::SmartPtr<structure_utils::TreeResultsList>& results) override;
  void HoldFilters(bool on) override { m_hold.SetOn(on); }
  bool CancelFilter() override;
  Expansion Expand(const zelk::BaseInstance& instance) override;
  /// To be called while nothing is under way. Names each new violation on stderr; true without any.
  [[nodiscard]] bool Check();

private:
  class State;

  /// The switches are those of the process. Puts them back when it ends.
  class SwitchScope {
  public:
    SwitchScope(bool showsBodies, bool collapses);
    ~SwitchScope();
    SwitchScope(const SwitchScope&) = delete;
    SwitchScope& operator=(const SwitchScope&) = delete;

  private:
    const bool m_showedBodies = guitree::WorldTreeState::IsShowingBodies();
    const bool m_collapsed = guitree::WorldTreeState::IsCollapsingInstances();
  };

  /// Makes the filter of the view's type what the settings and the switches say; it is there from now on.
  void _ApplyFilter(const du::SmartPtr<zelk::View>& view);
  [[nodiscard]] const FilterSettings& _GetFilter(const du::SmartPtr<zelk::View>& view) const;
  [[nodiscard]] bool _IsFiltered(const du::SmartPtr<zelk::View>& view) const;
  /// To be called before the panel shows everything: what a filter at work finds would come on top.
  void _EndFilter();
  void _SettleLoads();
  void _SettleFilter();
  void _BeginFirstFilter();
  void _GiveWayToEdit();
  void _Populate(bool keepExpanded);
  [[nodiscard]] std::string _NameForTrace(const zelk::Object& object) const;

  const SwitchScope m_switches;
  const du::SmartPtr<memkernel::World> m_world;
  const script::Stage& m_stage;
  const texthost::PrintStyle m_style;
  std::string m_trace;
  PanelHost m_host;
  std::unique_ptr<hostcheck::CallTracer> m_tracer;
  std::unique_ptr<hostcheck::ProtocolChecker> m_checker;
  std::size_t m_reported = 0;
  /// By the types of views.
  std::map<std::string, FilterSettings> m_filters;
  /// That of the options, until it has begun.
  std::optional<FilterSettings> m_firstFilter;
  FilterHold m_hold;
  /// An edit has ended a filter, and no other has begun since.
  bool m_isFilterDue = false;
  du::SmartPtr<guitree::GuiTree> m_gui;
  du::SmartPtr<guitree::StructureTreeState> m_state;
};
