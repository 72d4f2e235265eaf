#include "support/RowCount.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "zelremote/TextPattern.h"

namespace bench {
namespace {

class RowCounter {
public:
  RowCounter(const std::string& text, RowRule rule) : m_rule(rule)
  {
    m_search.SetPattern(std::make_shared<const zelremote::TextPattern>(text, false, false));
  }

  [[nodiscard]] std::size_t CountBelow(const zelk::BaseInstance& parent)
  {
    std::vector<du::SmartPtr<zelk::BaseInstance>> children;
    parent.GetBaseChildren(children);
    if (m_rule.hidesBodies) {
      children.erase(
          std::remove_if(children.begin(), children.end(), [](const auto& child) { return child->IsBodyInstance(); }),
          children.end());
    }
    const auto isMatch = [this](const auto& child) {
      m_search.Begin();
      return m_search.Add(child->GetObjectName().GetView());
    };
    const bool areAllKept = m_rule.takesSiblings && std::any_of(children.begin(), children.end(), isMatch);
    std::size_t count = 0;
    for (const auto& child : children) {
      const std::size_t below = CountBelow(*child);
      count += below + (below > 0 || areAllKept || isMatch(child) ? 1 : 0);
    }
    return count;
  }

private:
  const RowRule m_rule;
  zelremote::TextSearch m_search;
};

}  // namespace

std::size_t CountRows(const zelk::BaseTree& tree, const std::string& text, RowRule rule)
{
  du::SmartPtr<zelk::BaseInstance> root;
  tree.GetBaseRoot(root);
  return root ? 1 + RowCounter(text, rule).CountBelow(*root) : 0;
}

}  // namespace bench
