#include "support/FilterHold.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "guitree/StructureFilteredTree.h"
#include "guitree/StructureTreeState.h"
#include "hostcheck/ProtocolChecker.h"

namespace viewertest {

namespace {

/// A cancel wakes nobody, so the job that waits looks for it.
constexpr std::chrono::milliseconds s_look(1);

}  // namespace

/// What workers and owner share.
class FilterHold::Gate {
public:
  void HoldNext()
  {
    const std::lock_guard lock(m_mutex);
    m_isWanted = true;
    m_isLetGo = false;
    m_isReached = false;
  }

  void LetGo()
  {
    const std::lock_guard lock(m_mutex);
    m_isWanted = false;
    m_isLetGo = true;
    m_changed.notify_all();
  }

  void SetJob(const du::SmartPtr<zelk::AsyncEvent>& job)
  {
    const std::lock_guard lock(m_mutex);
    m_job = job;
    m_changed.notify_all();
  }

  /// On a worker. The panel keeps the job's event until the job has come back.
  void Wait()
  {
    std::unique_lock lock(m_mutex);
    if (!std::exchange(m_isWanted, false)) {
      return;
    }
    m_changed.wait(lock, [this] { return m_job || m_isLetGo; });
    const zelk::AsyncEvent* const job = m_job.Get();
    m_isReached = true;
    while (!m_isLetGo && !job->IsCanceled()) {
      m_changed.wait_for(lock, s_look);
    }
    m_isReached = false;
  }

  [[nodiscard]] bool IsReached() const
  {
    const std::lock_guard lock(m_mutex);
    return m_isReached;
  }

private:
  mutable std::mutex m_mutex;
  std::condition_variable m_changed;
  du::SmartPtr<zelk::AsyncEvent> m_job;
  bool m_isWanted = false;
  bool m_isReached = false;
  bool m_isLetGo = false;
};

class FilterHold::Tree final : public guitree::StructureFilteredTree {
public:
  explicit Tree(const std::shared_ptr<Gate>& gate) : m_gate(gate) {}

protected:
  void AddMatchedFilterItem(const du::SmartPtr<zelk::BaseInstance>& instance, bool matched) override
  {
    StructureFilteredTree::AddMatchedFilterItem(instance, matched);
    if (matched) {
      m_gate->Wait();
    }
  }

private:
  const std::shared_ptr<Gate> m_gate;
};

class FilterHold::State final : public guitree::StructureTreeState {
public:
  State(guitree::GuiTree& tree, const std::shared_ptr<Gate>& gate) : StructureTreeState(tree, true), m_gate(gate) {}
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() override { _DetachStatusLookups(); }

  [[nodiscard]] bool GetDisplayRoot() override { return true; }
  [[nodiscard]] guitree::FilteredTree* CreateFilteredTree() override
  {
    return std::make_unique<Tree>(m_gate).release();
  }

private:
  const std::shared_ptr<Gate> m_gate;
};

class FilterHold::Host final : public hostcheck::ProtocolChecker {
public:
  Host(guitree::GuiInterface& next, const std::shared_ptr<Gate>& gate) : ProtocolChecker(&next), m_gate(gate) {}

  du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event) override
  {
    m_gate->SetJob(event);
    return ProtocolChecker::CreateFilterProgressCtrl(event);
  }
  void SetTreeCalculating(bool isCalculating) override
  {
    if (!isCalculating) {
      m_gate->SetJob({});
    }
    ProtocolChecker::SetTreeCalculating(isCalculating);
  }

private:
  const std::shared_ptr<Gate> m_gate;
};

FilterHold::FilterHold(viewer::MainWindow& window)
    : m_gate(std::make_shared<Gate>()), m_host(std::make_unique<Host>(window.GetStructure().GetModel(), m_gate))
{
  viewer::Session& session = window.GetSession();
  guitree::GuiTree& panel = *window.GetStructure().GetModel().GetPanel();
  session.SetFollower({});
  panel.Close();
  panel.SetGuiInterface(m_host.get());
  panel.SetTreeState(du::MakeSmart<State>(panel, m_gate));
  panel.Initialise(session.GetWorld());
  session.SetFollower(window.GetStructure().GetModel().GetSceneManagerObserver());
}

FilterHold::~FilterHold()
{
  LetGo();
}

void FilterHold::HoldNext()
{
  m_gate->HoldNext();
}

bool FilterHold::IsReached() const
{
  return m_gate->IsReached();
}

void FilterHold::LetGo()
{
  m_gate->LetGo();
}

const std::vector<std::string>& FilterHold::GetViolations() const noexcept
{
  return m_host->GetViolations();
}

}  // namespace viewertest
