#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "du/SmartPtr.h"
#include "guitree/FilteredTree.h"
#include "guitree/GuiTree.h"
#include "memkernel/Tree.h"
#include "memkernel/World.h"
#include "support/Panel.h"
#include "zelk/AsyncEvent.h"
#include "zelremote/StructureFilterInfo.h"

namespace bench {

/// A host that creates no row, and notes when the result of a filter comes in.
class FilterHost final : public IdleHost {
public:
  using IdleHost::InstanceCreate;
  void InstanceCreate(guitree::FilteredTree::Node* node,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void SetTreeCalculating(bool isCalculating) override;
  du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event) override;

  std::size_t rows = 0;
  /// Of the job that was started last.
  du::SmartPtr<zelk::AsyncEvent> job;
  std::function<void()> onResult;
};

/// Seconds of the processor that other threads than the present one spend.
class WorkerTimer {
public:
  WorkerTimer();
  [[nodiscard]] double GetSeconds() const;

private:
  double m_process;
  double m_thread;
};

/// What one filter took, from the request to the last row, in seconds of the processor.
struct FilterTimes {
  double worker = 0;
  double owner = 0;
  /// The longest single block of the owner's thread, and the longest that made no rows.
  double longest = 0;
  double longestOther = 0;
  std::size_t rows = 0;
};

/// A panel that follows the world's tree and filters it on one worker. One a process, since the world is installed for
/// it.
class FilterPanel {
public:
  explicit FilterPanel(const du::SmartPtr<memkernel::Tree>& tree);
  FilterPanel(const FilterPanel&) = delete;
  FilterPanel& operator=(const FilterPanel&) = delete;
  ~FilterPanel();

  [[nodiscard]] zelremote::StructureFilterInfo& GetFilter();
  [[nodiscard]] FilterHost& GetHost() { return m_host; }
  [[nodiscard]] std::size_t GetRowCount() const;
  /// Asks for a population and returns at once.
  void Populate();
  /// Until no job is under way and nothing is due.
  void Settle();
  /// A population by the filter, to its end.
  [[nodiscard]] FilterTimes Filter();
  /// The most that is allocated during such a population until its result comes in, on top of what was before.
  [[nodiscard]] double MeasureBuildBytes();

private:
  class State;

  [[nodiscard]] bool _IsBusy() const;

  FilterHost m_host;
  const du::SmartPtr<memkernel::World> m_world;
  const du::SmartPtr<guitree::GuiTree> m_guiTree;
  du::SmartPtr<State> m_state;
};

}  // namespace bench
