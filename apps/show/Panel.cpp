#include "Panel.h"

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

}  // namespace

/// A state whose filters can be held. The root is an assembly like any other, or stands above several files: it is a
/// row that a filter may find, and nothing is spared for its sake.
class Panel::State final : public guitree::StructureTreeState {
public:
  State(guitree::GuiTree& tree, FilterHold& hold) : StructureTreeState(tree, true), m_hold(hold) {}

  [[nodiscard]] bool GetDisplayRoot() override { return true; }
  [[nodiscard]] guitree::FilteredTree* CreateFilteredTree() override { return m_hold.MakeTree(); }

private:
  FilterHold& m_hold;
};

Panel::Panel(const du::SmartPtr<memkernel::World>& world, script::Stage& stage, const Options& options)
    : m_world(world),
      m_stage(stage),
      m_style(options.style),
      m_filter(options.filter),
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
  m_gui->SetGuiInterface(first);
  m_host.SetPanel(m_gui.Get());
  Apply(m_filter, *m_state->GetStructureFilter());
  m_gui->SetTreeState(m_state);
  m_gui->Initialise(world);
  stage.SetFollower(m_host.GetSceneManagerObserver());
  world->GetMemTree().SetEditGate([this] { _GiveWayToEdit(); });
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
  StatusLine line(terminal::IsStderrTerminal());
  const auto start = std::chrono::steady_clock::now();
  m_world->GetLoop().RunDue();
  while (IsFiltering() && !m_hold.IsReached()) {
    if (InterruptScope::WasInterrupted()) {
      CancelFilter();
    }
    m_world->GetLoop().WaitAndRun(s_turn);
    const texthost::FilterProgress* const progress = m_host.GetFilterProgress();
    if (progress && std::chrono::steady_clock::now() - start > s_silence) {
      line.Show(progress->GetLine());
    }
  }
  return !InterruptScope::WasInterrupted();
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

void Panel::SetFilter(const FilterSettings& settings)
{
  // The result of a filter that is switched off while it is at work would come on top of the rows of everything.
  if (!settings.IsOn() && CancelFilter()) {
    static_cast<void>(Settle());
  }
  const bool isFiltered = m_filter.IsOn() || settings.IsOn();
  m_filter = settings;
  Apply(m_filter, *m_state->GetStructureFilter());
  if (isFiltered) {
    _Populate(false);
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
