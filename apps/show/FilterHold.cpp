#include "FilterHold.h"

#include <condition_variable>
#include <mutex>

#include "guitree/StructureFilteredTree.h"

/// What workers and owner share. Jobs are numbered.
class FilterHold::Gate {
public:
  explicit Gate(const du::SmartPtr<memkernel::OwnerLoop>& loop) : m_loop(loop) {}

  [[nodiscard]] unsigned int BeginJob()
  {
    const std::lock_guard lock(m_mutex);
    return ++m_last;
  }

  void LetGo()
  {
    const std::lock_guard lock(m_mutex);
    m_letGo = m_last;
    m_changed.notify_all();
  }

  /// On a worker.
  void Wait(unsigned int job)
  {
    std::unique_lock lock(m_mutex);
    if (job <= m_letGo) {
      return;
    }
    m_waiting = job;
    m_loop->Invoke([] {});
    m_changed.wait(lock, [&] { return job <= m_letGo; });
  }

  [[nodiscard]] bool IsReached() const
  {
    const std::lock_guard lock(m_mutex);
    return m_waiting == m_last && m_last > m_letGo;
  }

private:
  const du::SmartPtr<memkernel::OwnerLoop> m_loop;
  mutable std::mutex m_mutex;
  std::condition_variable m_changed;
  unsigned int m_last = 0;
  /// Jobs up to this one need not wait.
  unsigned int m_letGo = 0;
  unsigned int m_waiting = 0;
};

class FilterHold::Tree final : public guitree::StructureFilteredTree {
public:
  explicit Tree(const std::shared_ptr<Gate>& gate) : m_gate(gate), m_job(gate->BeginJob()) {}

protected:
  /// The build holds the kernel's lock meanwhile.
  void AddMatchedFilterItem(const du::SmartPtr<zelk::BaseInstance>& instance, bool matched) override
  {
    StructureFilteredTree::AddMatchedFilterItem(instance, matched);
    if (matched) {
      m_gate->Wait(m_job);
    }
  }

private:
  const std::shared_ptr<Gate> m_gate;
  const unsigned int m_job;
};

FilterHold::FilterHold(const du::SmartPtr<memkernel::OwnerLoop>& loop) : m_gate(std::make_shared<Gate>(loop)) {}

FilterHold::~FilterHold()
{
  m_gate->LetGo();
}

void FilterHold::SetOn(bool on)
{
  m_isOn = on;
  if (!on) {
    m_gate->LetGo();
  }
}

guitree::FilteredTree* FilterHold::MakeTree()
{
  LetGo();
  return m_isOn ? std::make_unique<Tree>(m_gate).release() : nullptr;
}

void FilterHold::LetGo()
{
  m_gate->LetGo();
}

bool FilterHold::IsReached() const
{
  return m_gate->IsReached();
}
