#include "hostcheck/ProtocolChecker.h"

#include <utility>

#include "RowBook.h"

namespace hostcheck {

namespace {

du::SmartPtr<zelk::BaseInstance> GetParent(const zelk::BaseInstance& instance)
{
  du::SmartPtr<zelk::BaseInstance> parent;
  instance.GetBaseParent(parent);
  return parent;
}

}  // namespace

ProtocolChecker::ProtocolChecker(guitree::GuiInterface* next, Callback onViolation)
    : ForwardingHost(next), m_onViolation(std::move(onViolation)), m_rows(std::make_unique<RowBook>())
{
}

ProtocolChecker::~ProtocolChecker() = default;

std::size_t ProtocolChecker::GetRowCount() const
{
  return m_rows->GetRowCount();
}

void ProtocolChecker::CheckAtRest()
{
  if (m_depth > 0) {
    _Report("at rest: " + std::to_string(m_depth) + " StartTreeUpdate without FinishTreeUpdate");
  }
  if (m_populationsBegun > 0) {
    _Report("at rest: a population has begun and never cleared the rows");
  }
}

void ProtocolChecker::StartTreeUpdate()
{
  ++m_depth;
  m_justCleared = false;
  ForwardingHost::StartTreeUpdate();
}

void ProtocolChecker::FinishTreeUpdate()
{
  if (m_depth == 0) {
    _Keep(m_notes, _Describe({"FinishTreeUpdate"}) + "no StartTreeUpdate before it");
  } else if (--m_depth == 0) {
    m_populationInBatch = false;
    m_removedInBatch.clear();
  }
  m_justCleared = false;
  m_mustStayEmpty = false;
  ForwardingHost::FinishTreeUpdate();
}

void ProtocolChecker::ClearTree()
{
  _RequireBracket({"ClearTree"});
  if (m_populationsBegun == 0) {
    _Violate({"ClearTree"}, "no StoreExpandedAndFirstVisibleBeforePopulate before it");
  } else {
    --m_populationsBegun;
  }
  m_rows->Clear();
  m_removedInBatch.clear();
  m_justCleared = true;
  m_mustStayEmpty = false;
  ForwardingHost::ClearTree();
}

void ProtocolChecker::StoreExpandedAndFirstVisibleBeforePopulate(bool keepExpanded)
{
  ++m_populationsBegun;
  m_populationInBatch = m_populationInBatch || m_depth > 0;
  ForwardingHost::StoreExpandedAndFirstVisibleBeforePopulate(keepExpanded);
}

void ProtocolChecker::RestoreExpandedAfterPopulate()
{
  _RequireBracket({"RestoreExpandedAfterPopulate"});
  ForwardingHost::RestoreExpandedAfterPopulate();
}

bool ProtocolChecker::CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  if (!instance || !m_rows->HasRow(*instance)) {
    _Violate({"CheckAndUpdateNodeNameAndType", instance.Get()}, "there is no such row");
  }
  return ForwardingHost::CheckAndUpdateNodeNameAndType(instance);
}

void ProtocolChecker::InstanceCreate(guitree::FilteredTree::Node* node,
                                     const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  const auto* above = node;
  _CreateRow(du::SmartPtr<zelk::BaseInstance>(node ? node->instance : nullptr), [&above] {
    above = above->parent;
    return du::SmartPtr<zelk::BaseInstance>(above ? above->instance : nullptr);
  });
  ForwardingHost::InstanceCreate(node, controller, assocHlight);
}

void ProtocolChecker::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                                     const du::SmartPtr<zelk::BaseInstance>& parent,
                                     const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  du::SmartPtr<zelk::BaseInstance> above = parent;
  _CreateRow(instance, [&above] {
    auto ancestor = above;
    above = ancestor ? GetParent(*ancestor) : nullptr;
    return ancestor;
  });
  ForwardingHost::InstanceCreate(instance, parent, controller, assocHlight);
}

void ProtocolChecker::InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                                     const du::SmartPtr<zelk::BaseInstance>& parent, bool repopulatePending)
{
  const Call call{"InstanceRemove", instance.Get()};
  if (!repopulatePending) {
    _RequireBracket(call);
  }
  if (!instance || !m_rows->HasRow(*instance)) {
    _Violate(call, "there is no such row");
  } else {
    m_rows->RemoveBranch(*instance);
    m_removedInBatch.emplace(instance.Get(), instance);
  }
  ForwardingHost::InstanceRemove(instance, parent, repopulatePending);
}

void ProtocolChecker::Reset()
{
  m_rows->Clear();
  m_removedInBatch.clear();
  ForwardingHost::Reset();
}

bool ProtocolChecker::IsTreeVisibleInUI() const
{
  const bool answer = ForwardingHost::IsTreeVisibleInUI();
  _NoteAnswer(answer);
  return answer;
}

bool ProtocolChecker::IsValidView(const du::SmartPtr<zelk::View>& view)
{
  const bool answer = ForwardingHost::IsValidView(view);
  _NoteAnswer(answer);
  return answer;
}

// Both questions are asked on other occasions as well; only between the clearing and the first row do they decide on
// rows.
void ProtocolChecker::_NoteAnswer(bool shows) const
{
  m_mustStayEmpty = m_mustStayEmpty || (m_justCleared && !shows);
}

void ProtocolChecker::_CreateRow(const du::SmartPtr<zelk::BaseInstance>& instance, const NextAncestor& nextAncestor)
{
  const Call call{"InstanceCreate", instance.Get()};
  _RequireBracket(call);
  if (m_mustStayEmpty) {
    _Violate(call, "the host has just said that it shows no rows");
  }
  m_justCleared = false;
  if (!instance) {
    _Violate(call, "a row without an instance");
    return;
  }
  if (m_rows->HasRow(*instance)) {
    if (!m_populationInBatch) {
      _Violate(call, "the row is there already");
    }
  } else if (m_rows->HasPlace(*instance)) {
    _Violate(call, "the row comes after rows below it");
  }
  m_removedInBatch.erase(instance.Get());
  m_rows->AddRow(*instance);
  _PlaceBelowAncestors(call, *instance, nextAncestor);
}

void ProtocolChecker::_PlaceBelowAncestors(const Call& call, const zelk::BaseInstance& instance,
                                           const NextAncestor& nextAncestor)
{
  const zelk::BaseInstance* below = &instance;
  while (const auto ancestor = nextAncestor()) {
    const bool isKnown = m_rows->HasPlace(*ancestor);
    if (!isKnown) {
      if (_IsRemoved(*ancestor)) {
        _Violate(call, "it lies below a row that was removed");
      }
      m_rows->AddHidden(ancestor);
    }
    m_rows->Move(*below, *ancestor);
    if (isKnown) {
      return;
    }
    below = ancestor.Get();
  }
  m_rows->MoveToTop(*below);
}

bool ProtocolChecker::_IsRemoved(const zelk::BaseInstance& instance)
{
  // One that was put back and is hidden now gets no row again.
  return m_removedInBatch.contains(&instance) && !GetParent(instance);
}

void ProtocolChecker::_RequireBracket(const Call& call)
{
  if (m_depth == 0) {
    _Violate(call, "outside of StartTreeUpdate and FinishTreeUpdate");
  }
}

std::string ProtocolChecker::_Describe(const Call& call) const
{
  std::string argument;
  if (call.instance) {
    argument = call.instance->GetObjectName();
    argument = argument.empty() ? "unnamed" : argument;
  }
  return "call " + std::to_string(GetCallCount() + 1) + ": " + call.name + '(' + argument + "): ";
}

void ProtocolChecker::_Violate(const Call& call, const char* what)
{
  _Report(_Describe(call) + what);
}

void ProtocolChecker::_Report(const std::string& violation)
{
  ++m_violationCount;
  _Keep(m_violations, violation);
  if (m_onViolation) {
    m_onViolation(violation);
  }
}

void ProtocolChecker::_Keep(std::vector<std::string>& list, const std::string& text)
{
  if (list.size() < s_maxKept) {
    list.push_back(text);
  }
}

}  // namespace hostcheck
