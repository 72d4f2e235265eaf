#include "FilterRules.h"

#include <algorithm>
#include <cctype>

#include "IconRules.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"
#include "zelk/Instance.h"
#include "zelk/PropertyValue.h"

namespace systemtest {
namespace {

using Node = FilterResult::Node;

std::string ToLower(std::string text)
{
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::vector<BasePtr> ChildrenOf(const BasePtr& instance)
{
  std::vector<BasePtr> children;
  instance->GetBaseChildren(children);
  return children;
}

const zelk::Instance& AsPart(const BasePtr& instance)
{
  return dynamic_cast<const zelk::Instance&>(*instance);
}

std::string PartIdOf(const zelk::BaseInstance& instance)
{
  du::SmartPtr<zelk::PropertyValue> value;
  instance.GetPropertyValue(value, zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, "Part ID", {});
  std::string text;
  value->GetValueAsString(text);
  return text;
}

bool IsBefore(const BasePtr& a, const BasePtr& b, bool isDescending)
{
  return isDescending ? PartIdOf(*b) < PartIdOf(*a) : PartIdOf(*a) < PartIdOf(*b);
}

Node CopyBranch(const BasePtr& instance)
{
  Node node{instance, {}};
  for (const BasePtr& child : ChildrenOf(instance)) {
    node.children.push_back(CopyBranch(child));
  }
  return node;
}

class Worker {
public:
  Worker(const FilterRun& run, FilterResult& result) : m_run(run), m_settings(run.settings), m_result(result)
  {
    std::set<du::SmartPtr<zelk::Instance>> selected;
    run.selection->GetSelectedInstances(zelk::SelectionManager::SelectionList, selected, zelk::ExpandRuleInstances);
    m_selected.insert(selected.begin(), selected.end());
  }

  void Work(const Node& all)
  {
    const bool hasHiddenPass = _HasHiddenPass();
    Node shown = _Pass(all, hasHiddenPass);
    if (hasHiddenPass && m_settings.HasCriterion()) {
      shown = _Pass(shown, false);
    }
    m_result.root = std::make_unique<Node>(std::move(shown));
  }

  /// The root is asked about, and then the children up to the one at which the run sees that it is cancelled.
  void WorkUntilCancelled(const Node& all)
  {
    const bool hidden = _HasHiddenPass();
    _Ask(all.instance, hidden);
    const std::vector<Node> children = _Sort(all.children);
    bool bringsAll = false;
    if (_BringsSiblings(hidden)) {
      for (const Node& child : children) {
        bringsAll |= !_IsOut(child.instance, hidden);
      }
    }
    if (!children.empty()) {
      if (bringsAll) {
        m_result.created.insert(children.front().instance);
      } else {
        _Ask(children.front().instance, hidden);
      }
    }
    m_result.root = std::make_unique<Node>(Node{all.instance, {}});
    m_result.hasPlaceholder = true;
  }

private:
  [[nodiscard]] bool _HasHiddenPass() const
  {
    const bool hides = m_settings.hideBodies || m_settings.collapse;
    return hides && (!m_settings.HasCriterion() || m_settings.siblings);
  }
  [[nodiscard]] bool _BringsSiblings(bool hiddenPass) const { return m_settings.siblings && !hiddenPass; }

  [[nodiscard]] std::vector<Node> _Sort(std::vector<Node> nodes) const
  {
    if (m_settings.isSorted) {
      std::sort(nodes.begin(), nodes.end(), [this](const Node& a, const Node& b) {
        return IsBefore(a.instance, b.instance, m_settings.isDescending);
      });
    }
    return nodes;
  }
  [[nodiscard]] Node _Pass(const Node& top, bool hiddenPass)
  {
    _Ask(top.instance, hiddenPass);
    return _Keep(top, hiddenPass);
  }
  [[nodiscard]] Node _Keep(const Node& source, bool hiddenPass)
  {
    Node kept{source.instance, {}};
    const std::vector<Node> children = _Sort(source.children);
    std::vector<bool> isOut;
    for (const Node& child : children) {
      isOut.push_back(_IsOut(child.instance, hiddenPass));
    }
    const bool bringsAll = _BringsSiblings(hiddenPass) && std::count(isOut.begin(), isOut.end(), false) > 0;
    for (std::size_t i = 0; i < children.size(); ++i) {
      if (bringsAll) {
        m_result.created.insert(children[i].instance);
      }
      Node branch = _Keep(children[i], hiddenPass);
      if (bringsAll || !isOut[i] || !branch.children.empty()) {
        kept.children.push_back(std::move(branch));
      }
    }
    return kept;
  }

  /// Records a match.
  bool _Ask(const BasePtr& instance, bool hiddenPass)
  {
    const bool isMatch = !_IsHidden(instance) && (hiddenPass || _MeetsCriteria(instance));
    if (isMatch && (!hiddenPass || !m_settings.HasCriterion())) {
      m_result.matched.insert(instance);
      m_result.created.insert(instance);
    }
    return isMatch;
  }
  /// The root is spared, and what stands right below it, apart from bodies that are to be hidden.
  [[nodiscard]] bool _IsOut(const BasePtr& instance, bool hiddenPass)
  {
    const bool isMatch = _Ask(instance, hiddenPass);
    const auto line = Rows::ListFrom(instance);
    const bool isSpared =
        line.size() == 1 || (line.size() == 2 && !(m_settings.hideBodies && instance->IsBodyInstance()));
    return !isMatch && !isSpared;
  }
  [[nodiscard]] bool _IsHidden(const BasePtr& instance) const
  {
    const auto line = Rows::ListFrom(instance);
    return std::any_of(line.begin(), line.end(), [this](const BasePtr& step) {
      const zelk::Instance& part = AsPart(step);
      return (m_settings.hideBodies && part.IsBodyInstance())
             || (m_settings.collapse && part.IsMultiInstancedSibling() && !part.IsFirstMultiInstancedSibling());
    });
  }
  [[nodiscard]] bool _MeetsCriteria(const BasePtr& instance) const
  {
    const zelk::Instance& part = AsPart(instance);
    const bool isBody = part.IsBodyInstance();
    const bool isPart = !isBody && !part.HasNoneBodyChildren();
    if ((m_settings.parts || m_settings.bodies) && !(m_settings.parts && isPart) && !(m_settings.bodies && isBody)) {
      return false;
    }
    if (m_settings.selected && !_StandsForOneOf(instance, m_selected)) {
      return false;
    }
    if (!m_settings.text.empty() && ToLower(instance->GetObjectName()).find(m_settings.text) == std::string::npos) {
      return false;
    }
    if (m_settings.useResults && !(m_run.results && _StandsForOneOf(instance, *m_run.results))) {
      return false;
    }
    return _MeetsVisibility(part) && (!m_settings.issues || HasIssue(part, m_run.scene));
  }
  /// The first of equal siblings does while the others are hidden.
  [[nodiscard]] bool _StandsForOneOf(const BasePtr& instance, const std::set<BasePtr>& instances) const
  {
    std::vector<du::SmartPtr<zelk::Instance>> group;
    if (m_settings.collapse && AsPart(instance).IsFirstMultiInstancedSibling()) {
      AsPart(instance).GetAllMultiInstancedSibling(group);
    }
    return instances.contains(instance) || std::any_of(group.begin(), group.end(), [&instances](const auto& sibling) {
             return instances.contains(sibling);
           });
  }
  [[nodiscard]] bool _MeetsVisibility(const zelk::Instance& part) const
  {
    if (m_settings.visibility == 0) {
      return true;
    }
    du::SmartPtr<zelk::ShapeInstance> shape;
    return m_run.scene && m_run.scene->GetShapeInstance(du::ConstSmartPtr<zelk::Instance>(&part), shape)
           && shape->IsVisible() == (m_settings.visibility == 1);
  }

  const FilterRun& m_run;
  const FilterSettings& m_settings;
  FilterResult& m_result;
  std::set<BasePtr> m_selected;
};

}  // namespace

void Apply(const FilterSettings& settings, zelremote::StructureFilterInfo& filter)
{
  using Visibility = zelremote::StructureFilterInfo::Visibility;
  filter.SetText(settings.text);
  filter.SetPartsOnly(settings.parts);
  filter.SetBodiesOnly(settings.bodies);
  filter.SetSelectedOnly(settings.selected);
  filter.SetVisibility(settings.visibility == 0   ? Visibility::Any
                       : settings.visibility == 1 ? Visibility::Visible
                                                  : Visibility::Hidden);
  filter.SetIssuesOnly(settings.issues);
  filter.SetShowSiblings(settings.siblings);
  filter.SetDynamicUpdate(settings.isDynamic);
  const du::DualSymbol column = settings.isSorted
                                    ? du::DualSymbol(zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, "Part ID")
                                    : du::DualSymbol();
  filter.SetSortColumn(column);
  filter.SetSortDirection(!settings.isDescending);
  filter.useResultsList = settings.useResults;
  filter.resultsListLive = settings.resultsLive;
  filter.listMode = settings.list ? 1 : 0;
}

void SortByPartId(std::vector<BasePtr>& instances, bool isDescending)
{
  std::sort(instances.begin(), instances.end(),
            [isDescending](const BasePtr& a, const BasePtr& b) { return IsBefore(a, b, isDescending); });
}

FilterResult FilterRun::Work(const BasePtr& root, bool isCancelled) const
{
  FilterResult result;
  if (!root) {
    return result;
  }
  Worker worker(*this, result);
  if (isCancelled) {
    worker.WorkUntilCancelled(CopyBranch(root));
  } else {
    worker.Work(CopyBranch(root));
  }
  return result;
}

}  // namespace systemtest
