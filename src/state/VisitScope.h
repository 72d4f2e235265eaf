#pragma once

#include <optional>
#include <utility>

#include "guitree/TreeStateBase.h"

namespace guitree {

/// The length of a visit, for the population that it makes rows for. A host may open a branch from inside the visit of
/// another one, which goes on afterwards: both see what leaves the tree meanwhile.
class TreeStateBase::VisitScope {
public:
  VisitScope(TreeStateBase& state, unsigned int population)
      : m_state(state),
        m_outer(std::exchange(state.m_visitedPopulation, population)),
        m_isOutermost(!state.m_goneMeanwhile)
  {
    if (m_isOutermost) {
      m_state.m_goneMeanwhile.emplace();
    }
  }
  /// Goes on with the visit under way; without one, begins one for the rows that are there.
  explicit VisitScope(TreeStateBase& state) : VisitScope(state, state.m_visitedPopulation.value_or(*state.m_population))
  {
  }
  ~VisitScope()
  {
    m_state.m_visitedPopulation = m_outer;
    if (!m_outer) {
      m_state.m_openedMeanwhile.clear();
    }
    if (m_isOutermost) {
      m_state.m_goneMeanwhile.reset();
    }
  }
  VisitScope(const VisitScope&) = delete;
  VisitScope& operator=(const VisitScope&) = delete;

private:
  TreeStateBase& m_state;
  const std::optional<unsigned int> m_outer;
  const bool m_isOutermost;
};

}  // namespace guitree
