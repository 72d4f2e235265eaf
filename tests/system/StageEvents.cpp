// How events are played, and those of the panel itself.

#include <algorithm>
#include <array>

#include "Choose.h"
#include "Stage.h"
#include "guitree/TreeController.h"

namespace systemtest {
namespace {

const std::array<const char*, 5> s_texts{"bo", "x", "a", "nut", "no such name"};

bool Has(std::uint32_t bits, unsigned int bit)
{
  return (bits >> bit) % 2 == 1;
}

FilterSettings MakeSettings(const Event& event)
{
  FilterSettings settings;
  switch (event.first % 8) {
    case 0:
    case 1:
    case 2:
      settings.text = Choose(s_texts, event.second);
      break;
    case 3:
      settings.parts = true;
      settings.bodies = event.second % 3 == 0;
      break;
    case 4:
      settings.bodies = true;
      break;
    case 5:
      settings.selected = true;
      break;
    case 6:
      settings.visibility = 1 + static_cast<int>(event.second % 2);
      break;
    default:
      settings.issues = event.second % 2 == 0;
      settings.useResults = !settings.issues;
      break;
  }
  const std::uint32_t bits = event.first >> 3U;
  settings.isDynamic = Has(bits, 0);
  settings.siblings = Has(bits, 1) && Has(bits, 2);
  settings.list = Has(bits, 3) && Has(bits, 4);
  settings.isSorted = Has(bits, 5);
  settings.isDescending = Has(bits, 6);
  settings.resultsLive = Has(bits, 7);
  settings.useResults = settings.useResults || (Has(bits, 8) && Has(bits, 9) && Has(bits, 10));
  return settings;
}

std::string Describe(const FilterSettings& settings)
{
  std::string line = "filter";
  const auto add = [&line](bool isOn, const std::string& word) { line += isOn ? ' ' + word : std::string(); };
  add(!settings.text.empty(), '"' + settings.text + '"');
  add(settings.parts, "--parts");
  add(settings.bodies, "--bodies");
  add(settings.selected, "--selected");
  add(settings.visibility == 1, "--visible");
  add(settings.visibility == 2, "--hidden");
  add(settings.issues, "--issues");
  add(settings.useResults, "--results");
  add(settings.siblings, "--siblings");
  add(settings.list, "--list");
  add(settings.isDynamic, "--follow");
  add(settings.isSorted, settings.isDescending ? " # by part ID, descending" : " # by part ID");
  return line;
}

}  // namespace

void Stage::_PlayOne(const Event& event)
{
  using enum EventKind;
  const bool isOfTree = event.kind <= EndBatch;
  const bool isOfShapes = event.kind >= CreateShape && event.kind <= UnhighlightAll;
  if (!isOfTree && !isOfShapes) {
    _EndBatch();
  }
  if (isOfTree) {
    _PlayEdit(event);
  } else if (event.kind <= UnhighlightAll) {
    _PlayScene(event);
  } else {
    _PlayPanel(event);
  }
}

void Stage::_PlayPanel(const Event& event)
{
  using enum EventKind;
  switch (event.kind) {
    case Filter:
      return _SetFilter(MakeSettings(event));
    case FilterOff:
      return _SetFilter({});
    case Bodies: {
      const bool on = event.first % 2 == 0;
      _Say(on ? "bodies on" : "bodies off");
      guitree::WorldTreeState::SetIsShowingBodies(on);
      if (!m_model->GetFilter().IsOn()) {
        _DrainJobs();
      }
      m_state->ShowBodiesChanged();
      return m_model->ShowBodiesChanged();
    }
    case Collapse:
      return _SetCollapse(event.first % 2 == 0);
    case Results:
      return _SetResults(event);
    case HidePanel:
    case ShowPanel:
      m_host.isVisible = event.kind == ShowPanel;
      _Say(m_host.isVisible ? "panel show" : "panel hide");
      m_state->MadeVisible(m_host.isVisible);
      return m_model->SetVisible(m_host.isVisible);
    case PropsLoaded:
      m_host.arePropsLoaded = event.first % 5 != 0;
      _Remark(event, m_host.arePropsLoaded ? "the properties are there" : "properties are missing");
      return m_model->SetPropsLoaded(m_host.arePropsLoaded);
    case RefuseNames:
      m_host.refusesNames = event.first % 3 == 0;
      _Remark(event, m_host.refusesNames ? "names want new rows" : "names are shown in place");
      return m_model->SetRefusesNames(m_host.refusesNames);
    case CancelJob:
      if (!m_host.jobs.empty()) {
        _Remark(event);
        m_host.jobs.back()->Cancel();
        m_model->CancelJob();
      }
      return;
    case StepJob:
    case CancelWorkingJob:
      if (!m_kernel.HasThreads() && !m_kernel.pool.waiting.empty()) {
        _Remark(event);
        _RunTask(event.kind == CancelWorkingJob);
      }
      return;
    case OpenBranch:
      return _OpenBranch();
    default:
      return _Settle();
  }
}

void Stage::_SetFilter(const FilterSettings& settings)
{
  _Say(settings.HasCriterion() ? Describe(settings) : "filter off");
  FilterSettings next = settings;
  next.collapse = m_model->GetFilter().collapse;
  if (!next.IsOn()) {
    _DrainJobs();
  }
  Apply(settings, dynamic_cast<zelremote::StructureFilterInfo&>(m_state->GetFilter(m_gui->GetCurrentView())));
  m_state->PopulateTree(false);
  m_model->SetFilter(settings);
}

void Stage::_SetCollapse(bool on)
{
  _Say(on ? "collapse on" : "collapse off");
  if (!on) {
    _DrainJobs();
  }
  guitree::WorldTreeState::SetIsCollapsingInstances(on);
  m_state->UpdateFiltersForCollapsingInstances(on);
  m_model->CollapseChanged();
}

void Stage::_SetResults(const Event& event)
{
  std::set<BasePtr> found;
  for (const InstancePtr& instance : _ListTree()) {
    if ((event.first + found.size() * 7 + m_everMade.size()) % (2 + event.second % 5) == 0 || found.size() < 2) {
      found.insert(instance);
    }
  }
  std::string line = "results";
  for (const BasePtr& instance : found) {
    line += ' ' + _PathOf(*instance);
  }
  _Say(found.empty() ? "results off" : line);
  m_results = std::make_shared<const std::set<BasePtr>>(found);
  m_state->SetResultsComps(du::MakeSmart<structure_utils::TreeResultsList>(found));
  m_model->SetResults(m_results);
}

void Stage::_OpenBranch()
{
  const InstancePtr root = m_kernel.tree->GetRootInstance();
  if (m_kernel.HasThreads()) {
    const Rows::Row* const row = m_host.rows.Find(root.Get());
    if (row && row->canBeOpened) {
      static_cast<void>(_Open(root));
    }
  } else if (m_model->CanOpenBranch()) {
    _Say("# OpenBranch: expand " + _PathOf(*root));
    if (!_Open(root)) {
      _Fail("a placeholder that cannot be opened");
    }
    if (Rows::Row* const row = m_host.rows.Find(root.Get())) {
      row->canBeOpened = false;
    }
    m_model->OpenBranch();
  } else if (m_model->IsBusy() && m_state->ExpandFilterNode({root.Get()})) {
    _Fail("a branch was opened during a job");
  }
}

bool Stage::_Open(const InstancePtr& root)
{
  return m_second ? m_second->Open(*root) : m_state->ExpandFilterNode({root.Get()});
}

}  // namespace systemtest
