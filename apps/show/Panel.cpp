#include "Panel.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <utility>

#include "Interrupt.h"
#include "StatusLine.h"
#include "Terminal.h"
#include "guitree/TreeController.h"

namespace {

using namespace std::chrono_literals;

// Ctrl-C wakes nobody: it is looked at this often.
constexpr auto s_turn = 50ms;
// What is over sooner would only flicker.
constexpr auto s_silence = 150ms;

/// A line on the terminal for what takes longer.
class SlowLine {
public:
  void Show(const std::string& text)
  {
    if (std::chrono::steady_clock::now() - m_start > s_silence) {
      m_line.Show(text);
    }
  }

private:
  const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
  StatusLine m_line{terminal::IsStderrTerminal()};
};

std::string GetViewTypeName(const PanelHost& host, const du::SmartPtr<zelk::View>& view)
{
  return std::string(host.GetViewTypeString(view));
}

}  // namespace

/// A state whose filters can be held. The root is an assembly like any other, or stands above several files: it is a
/// row that a filter may find, and nothing is spared for its sake.
class Panel::State final : public guitree::StructureTreeState {
public:
  State(guitree::GuiTree& tree, FilterHold& hold) : StructureTreeState(tree, true), m_hold(hold) {}
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() override { _DetachStatusLookups(); }

  [[nodiscard]] bool GetDisplayRoot() override { return true; }
  [[nodiscard]] guitree::FilteredTree* CreateFilteredTree() override
  {
    guitree::FilteredTree* const tree = m_hold.MakeTree();
    return tree ? tree : StructureTreeState::CreateFilteredTree();
  }

private:
  FilterHold& m_hold;
};

Panel::SwitchScope::SwitchScope(bool showsBodies, bool collapses)
{
  guitree::WorldTreeState::SetIsShowingBodies(showsBodies);
  guitree::WorldTreeState::SetIsCollapsingInstances(collapses);
}

Panel::SwitchScope::~SwitchScope()
{
  guitree::WorldTreeState::SetIsShowingBodies(m_showedBodies);
  guitree::WorldTreeState::SetIsCollapsingInstances(m_collapsed);
}

Panel::Panel(const du::SmartPtr<memkernel::World>& world, script::Stage& stage, const Options& options)
    : m_switches(!options.noBodies, options.collapse),
      m_world(world),
      m_stage(stage),
      m_style(options.style),
      m_firstFilter(options.filter != FilterSettings{} ? std::optional(options.filter) : std::nullopt),
      m_hold(world->GetLoopPtr()),
      m_gui(du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject())),
      m_state(du::MakeSmart<State>(*m_gui, m_hold))
{
  guitree::GuiInterface* first = &m_host;
  if (options.trace) {
    m_tracer =
        std::make_unique<hostcheck::CallTracer>(first, [this](const std::string& line) { m_trace += line + '\n'; });
    m_tracer->SetNamer([this](const zelk::Object& object) { return _NameForTrace(object); });
    m_tracer->SetMapStyle({.words = true});
    first = m_tracer.get();
  }
  if (options.check) {
    m_checker = std::make_unique<hostcheck::ProtocolChecker>(first);
    first = m_checker.get();
  }
  // All loads are one wave then, which no row has to wait for, however quick the first ones are.
  const memkernel::ParallelTaskPause pause(world->GetMemTaskPool());
  m_gui->SetGuiInterface(first);
  m_host.SetPanel(m_gui.Get());
  _ApplyFilter(nullptr);
  m_gui->SetTreeState(m_state);
  m_gui->Initialise(world);
  stage.SetFollower(m_host.GetSceneManagerObserver());
  world->GetMemTree().SetEditGate([this] { _GiveWayToEdit(); });
  if (!IsLoading()) {
    _BeginFirstFilter();
  }
}

Panel::~Panel()
{
  m_world->GetMemTree().SetEditGate({});
  CancelFilter();
  m_gui->Close();
  m_host.SetPanel(nullptr);
}

bool Panel::Settle()
{
  _SettleLoads();
  if (!InterruptScope::WasInterrupted()) {
    _BeginFirstFilter();
  }
  _SettleFilter();
  return !InterruptScope::WasInterrupted();
}

void Panel::_SettleLoads()
{
  SlowLine line;
  const std::size_t all = m_world->GetMemLoader().GetLoadCount();
  while (IsLoading() && !InterruptScope::WasInterrupted()) {
    m_world->GetLoop().WaitAndRun(s_turn);
    const std::size_t left = std::min(m_world->GetMemLoader().GetLoadCount(), all);
    line.Show("Loading shapes " + std::to_string(100 * (all - left) / all) + '%');
  }
  // The last completions may still be on their way.
  m_world->GetLoop().RunDue();
}

void Panel::_SettleFilter()
{
  SlowLine line;
  while (IsFiltering() && !m_hold.IsReached()) {
    if (InterruptScope::WasInterrupted()) {
      CancelFilter();
    }
    m_world->GetLoop().WaitAndRun(s_turn);
    if (const texthost::FilterProgress* const progress = m_host.GetFilterProgress()) {
      line.Show(progress->GetLine());
    }
  }
}

void Panel::_BeginFirstFilter()
{
  if (const auto filter = std::exchange(m_firstFilter, std::nullopt); filter) {
    SetFilter(*filter);
  }
}

void Panel::CatchUp()
{
  if (m_isFilterDue) {
    _Populate(true);
  }
}

bool Panel::IsFiltering() const
{
  return m_gui->GetTreeController()->IsBusy();
}

bool Panel::IsLoading() const
{
  return m_world->GetMemLoader().GetLoadCount() != 0;
}

void Panel::SetFilter(const FilterSettings& settings)
{
  const du::SmartPtr<zelk::View> view = m_gui->GetCurrentView();
  const bool wasFiltered = _IsFiltered(view);
  m_filters[GetViewTypeName(m_host, view)] = settings;
  const bool isFiltered = _IsFiltered(view);
  if (!isFiltered) {
    _EndFilter();
  }
  _ApplyFilter(view);
  if (wasFiltered || isFiltered) {
    _Populate(false);
  }
}

const FilterSettings& Panel::GetFilter() const
{
  return _GetFilter(m_gui->GetCurrentView());
}

void Panel::SetViewType(const du::SmartPtr<zelk::View>& view, const std::string& type)
{
  const bool isCurrent = view == m_gui->GetCurrentView();
  const bool wasFiltered = _IsFiltered(view);
  m_host.SetViewType(view, type);
  const bool isFiltered = _IsFiltered(view);
  if (isCurrent && !isFiltered) {
    _EndFilter();
  }
  _ApplyFilter(view);
  if (isCurrent && (wasFiltered || isFiltered)) {
    _Populate(false);
  }
}

void Panel::PrepareView(const du::SmartPtr<zelk::View>& view)
{
  if (!_IsFiltered(view)) {
    _EndFilter();
  }
}

void Panel::SetShowingBodies(bool on)
{
  guitree::WorldTreeState::SetIsShowingBodies(on);
  m_isFilterDue = false;
  m_state->ShowBodiesChanged();
}

void Panel::SetCollapsing(bool on)
{
  if (!on && !GetFilter().IsOn()) {
    _EndFilter();
  }
  guitree::WorldTreeState::SetIsCollapsingInstances(on);
  m_state->UpdateFiltersForCollapsingInstances(on);
}

void Panel::SetResults(const du::SmartPtr<structure_utils::TreeResultsList>& results)
{
  m_state->SetResultsComps(results);
}

void Panel::_ApplyFilter(const du::SmartPtr<zelk::View>& view)
{
  auto& filter = dynamic_cast<zelremote::StructureFilterInfo&>(m_state->GetFilter(view));
  Apply(_GetFilter(view), filter);
  filter.hideBodies = !guitree::WorldTreeState::IsShowingBodies();
  filter.collapseInstances = IsCollapsing();
}

const FilterSettings& Panel::_GetFilter(const du::SmartPtr<zelk::View>& view) const
{
  static const FilterSettings s_none;
  const auto found = m_filters.find(GetViewTypeName(m_host, view));
  return found != m_filters.end() ? found->second : s_none;
}

bool Panel::_IsFiltered(const du::SmartPtr<zelk::View>& view) const
{
  return _GetFilter(view).IsOn() || IsCollapsing();
}

void Panel::_EndFilter()
{
  if (CancelFilter()) {
    _SettleFilter();
  }
}

void Panel::_Populate(bool keepExpanded)
{
  m_isFilterDue = false;
  m_state->PopulateTree(keepExpanded);
}

bool Panel::CancelFilter()
{
  const bool isCancelled = m_host.CancelFilter();
  m_hold.LetGo();
  return isCancelled;
}

Panel::Expansion Panel::Expand(const zelk::BaseInstance& instance)
{
  if (m_host.Expand(instance)) {
    return Expansion::Done;
  }
  if (IsFiltering()) {
    return Expansion::FilterAtWork;
  }
  return m_host.GetPath(instance).empty() ? Expansion::NoRow : Expansion::NothingLeftOut;
}

// Otherwise the edit would wait for as long as the filter reads the tree.
void Panel::_GiveWayToEdit()
{
  m_isFilterDue = CancelFilter() || m_isFilterDue;
}

void Panel::Print(std::ostream& out) const
{
  m_host.Print(out, m_style);
}

std::string Panel::TakeTrace()
{
  return std::exchange(m_trace, {});
}

void Panel::SetInSight(bool isInSight)
{
  m_host.SetInSight(isInSight);
  m_state->MadeVisible(isInSight);
}

bool Panel::Check()
{
  if (!m_checker) {
    return true;
  }
  m_checker->CheckAtRest();
  const auto& violations = m_checker->GetViolations();
  for (; m_reported < violations.size(); ++m_reported) {
    std::cerr << "guitree-show: violation at " << violations[m_reported] << '\n';
  }
  return m_checker->GetViolationCount() == 0;
}

std::string Panel::_NameForTrace(const zelk::Object& object) const
{
  if (const auto* instance = dynamic_cast<const zelk::BaseInstance*>(&object)) {
    return texthost::ReadRowName(*instance, m_style.ascii);
  }
  if (const auto* shape = dynamic_cast<const zelk::ShapeInstance*>(&object)) {
    du::SmartPtr<zelk::Instance> instance;
    shape->GetInstance(instance);
    return instance ? texthost::ReadRowName(*instance, m_style.ascii) : "null";
  }
  const std::string name = m_stage.Describe(object);
  return name.empty() ? std::string(object.GetDebugClassName()) : name;
}
