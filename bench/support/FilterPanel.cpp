#include "support/FilterPanel.h"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "guitree/StructureFilteredTree.h"
#include "guitree/TreeController.h"
#include "guitree/WorldTreeState.h"
#include "support/Measure.h"

namespace bench {
namespace {

double ReadClock(clockid_t clock)
{
  struct timespec now {};
  ::clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double GetThreadTime()
{
  return ReadClock(CLOCK_THREAD_CPUTIME_ID);
}

double GetProcessTime()
{
  return ReadClock(CLOCK_PROCESS_CPUTIME_ID);
}

}  // namespace

WorkerTimer::WorkerTimer() : m_process(GetProcessTime()), m_thread(GetThreadTime()) {}

double WorkerTimer::GetSeconds() const
{
  return GetProcessTime() - m_process - (GetThreadTime() - m_thread);
}

class FilterPanel::State final : public guitree::WorldTreeState {
public:
  using WorldTreeState::WorldTreeState;

  int GetUnloadedTypeIcon(const zelk::BaseInstance* /*instance*/, const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    return 0;
  }
  structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& /*view*/) override { return filter; }
  guitree::FilteredTree* CreateFilteredTree() override
  {
    return std::make_unique<guitree::StructureFilteredTree>().release();
  }

  zelremote::StructureFilterInfo filter{"bench"};
};

void FilterHost::InstanceCreate(guitree::FilteredTree::Node* /*node*/,
                                const du::SmartPtr<guitree::TreeSelectionController>& /*controller*/,
                                bool /*assocHlight*/)
{
  ++rows;
}

void FilterHost::SetTreeCalculating(bool isCalculating)
{
  if (!isCalculating && onResult) {
    onResult();
  }
}

du::SmartPtr<zelk::ProgressCtrl> FilterHost::CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event)
{
  job = event;
  return {};
}

FilterPanel::FilterPanel(const du::SmartPtr<memkernel::Tree>& tree)
    : m_world(du::MakeSmart<memkernel::World>(1U)),
      m_guiTree(du::MakeSmart<guitree::GuiTree>(m_world->CreateManagedObject()))
{
  m_world->tree = tree;
  m_world->InstallForProcess();
  m_guiTree->SetGuiInterface(&m_host);
  m_state = du::MakeSmart<State>(*m_guiTree);
  m_guiTree->SetTreeState(m_state);
  m_guiTree->Initialise(m_world);
}

FilterPanel::~FilterPanel()
{
  m_host.onResult = {};
  m_guiTree->Reset();
  m_guiTree->Close();
  m_host.job.Reset();
  m_world->Shutdown();
}

zelremote::StructureFilterInfo& FilterPanel::GetFilter()
{
  return m_state->filter;
}

std::size_t FilterPanel::GetRowCount() const
{
  return m_state->GetNotFilteredSet().size();
}

void FilterPanel::Populate()
{
  m_state->PopulateTree(false);
}

void FilterPanel::Settle()
{
  m_world->GetLoop().RunUntil([this] { return !_IsBusy() && m_world->GetMemTaskPool().GetUnfinishedCount() == 0; });
  m_world->GetLoop().RunDue();
}

FilterTimes FilterPanel::Filter()
{
  FilterTimes times;
  double rowsBegin = 0;
  const WorkerTimer timer;
  const double ownerBegin = GetThreadTime();
  m_host.rows = 0;
  m_host.onResult = [&] {
    rowsBegin = GetThreadTime();
    times.worker = timer.GetSeconds();
  };
  const auto measure = [&](const auto& work) {
    const double begin = GetThreadTime();
    rowsBegin = 0;
    work();
    const double end = GetThreadTime();
    times.longest = std::max(times.longest, end - begin);
    times.longestOther = std::max(times.longestOther, (rowsBegin > 0 ? rowsBegin : end) - begin);
  };
  measure([this] { Populate(); });
  while (_IsBusy()) {
    measure([this] { m_world->GetLoop().WaitAndRun(std::chrono::milliseconds(100)); });
  }
  times.owner = GetThreadTime() - ownerBegin;
  times.rows = m_host.rows;
  m_host.onResult = {};
  return times;
}

double FilterPanel::MeasureBuildBytes()
{
  const double before = GetAllocatedBytes();
  double most = before;
  bool isBuilding = true;
  m_host.onResult = [&] {
    most = std::max(most, GetAllocatedBytes());
    isBuilding = false;
  };
  Populate();
  while (isBuilding) {
    most = std::max(most, GetAllocatedBytes());
    m_world->GetLoop().WaitAndRun(std::chrono::milliseconds(1));
  }
  m_host.onResult = {};
  Settle();
  return most - before;
}

bool FilterPanel::_IsBusy() const
{
  return m_guiTree->GetTreeController()->IsBusy();
}

}  // namespace bench
