#include "ListHighlight.h"

#include <set>
#include <utility>

#include "memkernel/SelectionManager.h"
#include "zelk/SelectionObserver.h"

namespace viewer {

namespace {

/// As long as nobody notices that the window does not answer.
constexpr int s_portionMs = 10;

}  // namespace

class ListHighlight::Follower final : public zelk::SelectionObserver {
public:
  explicit Follower(ListHighlight& owner) : m_owner(owner) {}

  void OnEndUpdate() override { m_owner.Refresh(); }

private:
  ListHighlight& m_owner;
};

ListHighlight::ListHighlight(const du::SmartPtr<memkernel::World>& world, unsigned int list, Draw draw)
    : m_world(world), m_list(list), m_draw(std::move(draw)), m_follower(du::MakeSmart<Follower>(*this))
{
  connect(&m_timer, &QTimer::timeout, this, &ListHighlight::_Work);
  m_world->selectionManager->RegisterObserver(m_list, *m_follower);
}

ListHighlight::~ListHighlight()
{
  m_world->selectionManager->UnregisterObserver(m_list, *m_follower);
}

void ListHighlight::Refresh()
{
  m_isStale = true;
  m_timer.start();
}

void ListHighlight::_Work()
{
  if (std::exchange(m_isStale, false)) {
    std::set<du::SmartPtr<zelk::Instance>> listed;
    m_world->selectionManager->GetSelectedInstances(m_list, listed, zelk::ExpandRuleInstances);
    m_walk.Begin(listed);
    Q_EMIT Changed();
  }
  // Who was told may have changed the list.
  if (!m_isStale && m_walk.GoOn(QDeadlineTimer(s_portionMs))) {
    m_timer.stop();
    m_draw(m_walk.Take());
  }
}

}  // namespace viewer
