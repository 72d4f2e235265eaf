// The panel and its model: how they begin, come to rest, and are compared.

#include "Stage.h"

#include <algorithm>
#include <chrono>
#include <sstream>

#include "guitree/SceneInfoLog.h"
#include "guitree/TreeController.h"
#include "guitree/TypeIconMap.h"

namespace systemtest {

Stage::Stage(const Options& options)
    : m_kernel(options.hasThreads),
      m_gui(du::MakeSmart<guitree::GuiTree>(m_kernel.CreateManager())),
      m_state(du::MakeSmart<State>(*m_gui))
{
  m_host.losesRow = options.losesRow;
  m_host.SetPanel(m_gui.Get());
  if (options.makeSecondHost) {
    m_second = options.makeSecondHost();
    m_second->SetPanel(m_gui.Get());
    m_twin.SetSecond(&m_second->GetHost());
  }
  m_host.typeOf = [this](const du::SmartPtr<zelk::View>& view) {
    for (std::size_t i = 0; view && i < m_places.size(); ++i) {
      if (m_places[i].view == view) {
        return du::Symbol(i % 2 == 0 ? "odd" : "even");
      }
    }
    return du::Symbol("none");
  };
  m_gui->SetGuiInterface(&m_checker);
  m_gui->SetTreeState(m_state);
  m_gui->Initialise(m_kernel.world);
  _MakeModel();
  _Say("# guitree-show samples/nested-assembly.stp --script THIS");
  _Say("remove /pump");
  _Say("add assembly /top");
  m_everMade.push_back(m_kernel.tree->CreateRoot(_GetProduct("top")));
  // guitree-show begins with this scene, and with its view.
  _AddScene(0, true);
  _ActivateView(1);
  m_script.resize(3);
  _Say("view type 1 odd");
}

Stage::~Stage()
{
  _EndBatch();
  for (Place& place : m_places) {
    _StopListeningTo(place);
  }
  _UnbindSelection();
  if (m_treeListener) {
    m_kernel.tree->UnregisterObserver(*m_treeListener);
  }
  for (const Place& place : m_places) {
    if (place.hasScene) {
      m_host.reports->OnSceneRemoved(place.scene);
    }
  }
  // The filters of a state that is not reset stay for the length of the process.
  m_gui->Reset();
  m_gui->Close();
  while (m_kernel.IsAtWork()) {
    if (m_kernel.HasThreads()) {
      m_kernel.GetLoop().WaitAndRun(std::chrono::milliseconds(1));
    } else {
      m_kernel.pool.waiting.empty() ? m_kernel.loader->End(0) : m_kernel.pool.RunFirst();
    }
  }
  while (m_kernel.GetLoop().RunDue() > 0) {}
  m_gui.Reset();
  m_state.Reset();
}

void Stage::Play(const Event& event)
{
  if (!m_fault.empty()) {
    return;
  }
  _PlayOne(event);
  if (!m_treeBatch) {
    _RunLoop();
  }
}

void Stage::_RunLoop()
{
  m_kernel.GetLoop().RunDue();
}

void Stage::_RunTask(bool isCancelled)
{
  HandPool& pool = m_kernel.pool;
  if (pool.waiting.empty()) {
    return;
  }
  const bool isJob = dynamic_cast<guitree::GenerateFilteredTreeTask*>(pool.waiting.front().Get()) != nullptr;
  if (isJob) {
    if (!m_model->HasJobs()) {
      _Fail("a filter job that nobody has asked for");
      return;
    }
    m_model->WorkOnJob(isCancelled);
    if (isCancelled) {
      m_state->onQuestion = [this] { m_host.jobs.front()->Cancel(); };
    }
  }
  pool.RunFirst();
  m_state->onQuestion = nullptr;
  while (m_kernel.GetLoop().RunDue() > 0) {}
  if (isJob) {
    m_host.jobs.erase(m_host.jobs.begin());
    m_model->EndJob();
  }
}

void Stage::_DrainJobs()
{
  if (m_kernel.HasThreads()) {
    while (m_gui->GetTreeController()->IsBusy()) {
      m_kernel.GetLoop().WaitAndRun(std::chrono::milliseconds(1));
    }
    return;
  }
  while (!m_kernel.pool.waiting.empty() && m_fault.empty()) {
    _RunTask(false);
  }
}

void Stage::_Settle()
{
  _EndBatch();
  _ComeToRest();
  if (m_kernel.HasThreads()) {
    _Refresh();
  }
  if (m_fault.empty()) {
    _Compare();
  }
}

void Stage::_ComeToRest()
{
  for (bool isAtRest = false; !isAtRest && m_fault.empty();) {
    isAtRest = m_kernel.GetLoop().RunDue() == 0 && !m_kernel.IsAtWork() && !m_gui->GetTreeController()->IsBusy();
    if (m_kernel.HasThreads()) {
      m_kernel.GetLoop().WaitAndRun(std::chrono::milliseconds(isAtRest ? 0 : 1));
    } else if (!m_kernel.pool.waiting.empty()) {
      _RunTask(false);
    } else if (m_kernel.loader->GetCount() > 0) {
      m_kernel.loader->End(0);
    }
  }
}

// Whatever the workers have been overtaken by on the way, all of it is asked for once more.
void Stage::_Refresh()
{
  m_host.isVisible = m_host.arePropsLoaded = true;
  m_state->MadeVisible(true);
  _ForEachScene([this](Place& place) { m_host.reports->OnSceneRemoved(place.scene); });
  _ForEachScene([this](Place& place) { m_host.reports->OnSceneAdded(place.scene); });
  _ComeToRest();
  const du::SmartPtr<zelk::View> view = m_gui->GetCurrentView();
  m_host.reports->OnActiveViewChanged(nullptr);
  _ComeToRest();
  m_host.reports->OnActiveViewChanged(view);
  _ComeToRest();
  m_state->PopulateTree(false);
  _ComeToRest();

  auto model = std::make_unique<PanelModel>(m_kernel.tree, _GetNoView());
  model->SetRequest([](const zelk::Shape&, const std::function<void()>& onEnded) { onEnded(); });
  model->TakeFilters(*m_model);
  m_model = std::move(model);
  _ForEachScene([this](Place& place) {
    _ListenTo(place);
    _StopListeningTo(place);
  });
  m_model->ChangeView(_GetView());
  m_model->Populate();
  while (m_model->HasJobs()) {
    m_model->WorkOnJob(false);
    m_model->EndJob();
  }
}

template <typename Call>
void Stage::_ForEachScene(Call call)
{
  for (Place& place : m_places) {
    if (place.hasScene) {
      call(place);
    }
  }
}

void Stage::_MakeModel()
{
  m_model = std::make_unique<PanelModel>(m_kernel.tree, _GetView());
  m_model->SetRequest([this](const zelk::Shape& shape, std::function<void()> onEnded) {
    if (!m_kernel.loader->Expect(shape, std::move(onEnded))) {
      _Fail("a shape whose load was not asked for");
    }
  });
  if (m_kernel.HasThreads()) {
    return;
  }
  m_treeListener = du::MakeSmart<TreeListener>(*m_model);
  m_kernel.tree->RegisterObserver(*m_treeListener, false);
  m_selectionListener = du::MakeSmart<SelectionListener>(*m_model);
  m_highlightListener = du::MakeSmart<HighlightListener>(*m_model);
  _BindSelection();
}

void Stage::_BindSelection()
{
  if (m_kernel.HasThreads()) {
    return;
  }
  m_bound = m_current == 0 ? m_kernel.selection : m_places[m_current - 1].selection;
  m_bound->RegisterObserver(zelk::SelectionManager::SelectionList, *m_selectionListener);
  m_bound->RegisterObserver(zelk::SelectionManager::AssocHlightList, *m_highlightListener);
}

void Stage::_UnbindSelection()
{
  if (m_bound) {
    m_bound->UnregisterObserver(zelk::SelectionManager::SelectionList, *m_selectionListener);
    m_bound->UnregisterObserver(zelk::SelectionManager::AssocHlightList, *m_highlightListener);
    m_bound = nullptr;
  }
}

void Stage::_ListenTo(Place& place)
{
  m_model->AddScene(place.scene);
  if (const auto scene = du::DynamicCast<zelk::ShapeScene>(place.scene)) {
    place.listener = du::MakeSmart<SceneListener>(*m_model, place.scene);
    scene->RegisterObserver(*place.listener, du::Flags(0xb), true);
  }
}

void Stage::_StopListeningTo(Place& place)
{
  if (place.listener) {
    du::DynamicCast<zelk::ShapeScene>(place.scene)->UnregisterObserver(*place.listener);
    place.listener = nullptr;
  }
}

void Stage::_Compare()
{
  ++m_checks;
  m_checker.CheckAtRest();
  if (m_checker.GetViolationCount() > 0) {
    _Fail("the host was called against the protocol: " + m_checker.GetViolations().front());
    return;
  }
  const std::vector<std::string> rows = m_host.rows.ToText();
  const std::vector<std::string> expected = m_model->GetRows().ToText();
  m_mostRows = std::max(m_mostRows, rows.size());
  _CompareRows(rows, expected);
  _CompareSecond(expected);
  if (!m_fault.empty()) {
    return;
  }
  _NoteSituations();
  _CompareFlags();
  _CompareLogs();
}

void Stage::_CompareRows(const std::vector<std::string>& rows, const std::vector<std::string>& expected)
{
  if (rows != expected) {
    const auto [is, must] = std::mismatch(rows.begin(), rows.end(), expected.begin(), expected.end());
    std::ostringstream text;
    text << rows.size() << " rows, " << expected.size() << " expected; number " << is - rows.begin() + 1 << " is\n  "
         << (is == rows.end() ? "missing" : *is) << "\nand must be\n  " << (must == expected.end() ? "missing" : *must);
    _Fail(text.str());
  }
}

bool Stage::_IsInOrder(const std::vector<std::string>& rows) const
{
  std::vector<std::string> names;
  std::vector<BasePtr> open{m_kernel.tree->GetRootInstance()};
  while (!open.empty() && open.back()) {
    const BasePtr instance = open.back();
    open.pop_back();
    names.push_back(Rows::NameOf(*instance));
    std::vector<BasePtr> children;
    instance->GetBaseChildren(children);
    open.insert(open.end(), children.rbegin(), children.rend());
  }
  auto next = names.begin();
  return std::all_of(rows.begin(), rows.end(), [&](const std::string& row) {
    const std::size_t begin = row.find_first_not_of(' ');
    next = std::find(next, names.end(), row.substr(begin, row.find(" '") - begin));
    return next != names.end();
  });
}

// It reads how rows look from the scene that is shown, and so cannot tell what they last looked like without one. A row
// that comes to a hidden parent may stand where the parent would, and not behind all others.
void Stage::_CompareSecond(std::vector<std::string> expected)
{
  if (!m_second || !m_fault.empty()) {
    return;
  }
  if (!m_gui->GetCurrentLog()) {
    std::for_each(expected.begin(), expected.end(), &Rows::CutLook);
  }
  const std::vector<std::string> rows = m_second->ToText(m_host.rows);
  if (rows != expected && Rows::SortSiblings(rows) == Rows::SortSiblings(expected) && _IsInOrder(rows)) {
    return;
  }
  _CompareRows(rows, expected);
  if (!m_fault.empty()) {
    m_fault = "the second host: " + m_fault;
  }
}

// A comparison of nothing with nothing would always be good.
void Stage::_NoteSituations()
{
  const FilterSettings& filter = m_model->GetFilter();
  const bool isOn = filter.IsOn();
  std::size_t highlighted = 0;
  std::size_t selected = 0;
  std::size_t opening = 0;
  std::set<int> icons;
  std::set<int> states;
  m_host.rows.ForEach([&](const Rows::Row& row) {
    highlighted += row.hasHighlight ? 1U : 0U;
    selected += row.isSelected ? 1U : 0U;
    opening += row.canBeOpened ? 1U : 0U;
    icons.insert(row.icon);
    states.insert(row.state);
  });
  const std::size_t rows = m_host.rows.GetCount();
  const auto note = [this](const std::string& situation, bool isGiven) {
    m_situations[situation] += isGiven ? 1U : 0U;
  };
  note("all rows", !isOn && rows > 10);
  note("filtered rows", isOn && !filter.list && rows > 5);
  note("a list", isOn && filter.list && rows > 5);
  note("a sorted list", isOn && filter.list && filter.isSorted && rows > 5);
  note("siblings of a match", isOn && filter.siblings && !filter.list && rows > 5);
  note("no match", isOn && rows == 1);
  note("a hidden panel", !m_host.isVisible && rows > 5);
  note("a panel to be filled", m_model->NeedsRedraw());
  note("a selection to be caught up with", m_model->NeedsSelection());
  note("highlights to be caught up with", m_model->NeedsHighlights());
  note("a filter that waits for properties", m_model->IsBusy());
  note("a placeholder", opening > 0);
  note("selected rows", selected > 1);
  note("highlighted rows", highlighted > 1);
  note("selected rows of collapsed siblings", selected > 0 && filter.collapse);
  note("no bodies", filter.hideBodies && rows > 10);
  note("bodies and collapsed siblings in a filter", filter.hideBodies && filter.collapse && rows > 5);
  note("no scene that is shown", !m_gui->GetCurrentLog() && rows > 5);
  note("several scenes", std::count_if(m_places.begin(), m_places.end(), [](const Place& place) {
                           return place.hasScene && place.content && place.content->GetShapeInstanceCount() > 3;
                         }) > 2);
  for (const int icon : {0, 1, 6, 10, 16, 18, 24, 26, 28, 30, 32, 40, 44, 52}) {
    note("icon " + std::to_string(icon), icons.contains(icon) || icons.contains(icon + 1));
  }
  for (const int state : {1, 2, 3, 4, 5, 6, 7}) {
    note("state " + std::to_string(state), states.contains(state));
  }
}

void Stage::_CompareFlags()
{
  const auto compare = [this](const char* what, auto is, auto must) {
    if (is != must) {
      _Fail(std::string(what) + " is " + std::to_string(is) + " and must be " + std::to_string(must));
    }
  };
  compare("IsBusy", m_state->IsBusy(), m_model->IsBusy());
  compare("the controller's IsBusy", m_gui->GetTreeController()->IsBusy(), false);
  compare("the calculating mark", m_host.isCalculating, m_model->IsCalculating());
  compare("GetTreeNeedsRedraw", m_state->GetTreeNeedsRedraw(), m_model->NeedsRedraw());
  compare("GetSelectionNeedsUpdating", m_state->GetSelectionNeedsUpdating(), m_model->NeedsSelection());
  compare("GetAssocHlightsNeedsUpdating", m_state->GetAssocHlightsNeedsUpdating(), m_model->NeedsHighlights());
  compare("GetNotFilteredSet", m_state->GetNotFilteredSet() == m_model->GetShown(), true);
  if (!m_kernel.HasThreads()) {
    compare("the number of populations", m_host.clears, m_model->GetPopulations());
    compare("loads that must be pending", m_model->HasPendingLoads(), false);
    compare("loads that nobody has asked for", m_kernel.loader->HasUnexpected(), false);
  }
  for (const InstancePtr& instance : m_everMade) {
    compare("IsAssocHlight", m_state->IsAssocHlight(instance.Get()),
            m_model->GetHighlighted().contains(instance.Get()));
  }
}

void Stage::_CompareLogs()
{
  for (const Place& place : m_places) {
    const auto scene = du::DynamicCast<zelk::ShapeScene>(place.scene);
    guitree::SceneInfoLog* const log = scene ? m_gui->GetLog(scene) : nullptr;
    const LogModel* const model = m_model->FindLog(place.scene);
    if ((log != nullptr) != (model != nullptr)) {
      _Fail("a scene has a log that it must not have, or none");
      return;
    }
    if (!log) {
      continue;
    }
    const auto isSame = [](const auto& table, const auto& map) {
      return std::map<const zelk::BaseInstance*, int>(table.begin(), table.end()) == map;
    };
    const auto compare = [this](bool isGood, const char* what) {
      if (!isGood) {
        _Fail(std::string("the log of a scene: ") + what);
      }
    };
    compare(isSame(log->GetVisibleMap(), model->GetVisible().GetStates()), "visible states");
    // A second host asks for icons as well, at times of its own.
    compare(m_second || isSame(log->GetTypeIconMap(), model->GetIcons()), "icons");
    // What has changed since the host was told depends on who came first.
    if (!m_kernel.HasThreads()) {
      compare(isSame(log->GetVisibleChangeMap(), model->GetVisible().GetChanges()), "changes of visible states");
      compare(isSame(log->GetTypeIconChangeMap(), model->GetIconChanges()), "changes of icons");
    }
  }
}

void Stage::_Fail(const std::string& what)
{
  if (m_fault.empty()) {
    m_fault = what;
  }
}

}  // namespace systemtest
