#include "state/FormerRows.h"

#include <cstddef>
#include <utility>

#include "du/SmartPtr.h"
#include "du/Task.h"
#include "facade/RunningPool.h"

namespace guitree {
namespace {

/// Up to which a worker is not worth its while: a few tenths of a millisecond.
constexpr std::size_t s_smallSize = 20000;

class RowDisposal final : public du::Task {
public:
  explicit RowDisposal(FormerRows::Rows rows) : m_rows(std::move(rows)) {}

  void Run() override { m_rows.clear(); }

private:
  FormerRows::Rows m_rows;
};

}  // namespace

FormerRows::FormerRows(Rows& rows) : m_rows(std::exchange(rows, Rows())) {}

FormerRows::~FormerRows()
{
  if (m_rows.size() <= s_smallSize) {
    return;
  }
  if (du::TaskPool* const pool = FindRunningPool()) {
    pool->InsertTask(du::MakeSmart<RowDisposal>(std::move(m_rows)));
  }
}

}  // namespace guitree
