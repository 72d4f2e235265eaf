#include "zelremote/HiddenBranches.h"

#include <algorithm>
#include <cstdint>

#include "zelk/Instance.h"

namespace zelremote {
namespace {

constexpr std::size_t s_slotCount = 1024;

bool IsLaterSibling(const zelk::BaseInstance& instance)
{
  const auto* part = zelk::AsInstance(&instance);
  return part && part->IsMultiInstancedSibling() && !part->IsFirstMultiInstancedSibling();
}

bool IsHiddenItself(const zelk::BaseInstance& instance, HidingRule rule)
{
  return (rule.bodies && instance.IsBodyInstance()) || (rule.laterSiblings && IsLaterSibling(instance));
}

void Ascend(du::SmartPtr<zelk::BaseInstance>& instance)
{
  du::SmartPtr<zelk::BaseInstance> parent;
  instance->GetBaseParent(parent);
  instance.Swap(parent);
}

}  // namespace

HiddenBranches::HiddenBranches(const HiddenBranches& other) : m_slots(other.m_slots.size()) {}

HiddenBranches& HiddenBranches::operator=(const HiddenBranches& other)
{
  m_slots.assign(other.m_slots.size(), Slot());
  return *this;
}

void HiddenBranches::BeginToRemember()
{
  m_slots.assign(s_slotCount, Slot());
}

bool HiddenBranches::IsHidden(const du::SmartPtr<zelk::BaseInstance>& instance, HidingRule rule)
{
  if (!rule.IsOn()) {
    return false;
  }
  du::SmartPtr<zelk::BaseInstance> parent;
  instance->GetBaseParent(parent);
  if (!parent || rule != m_rule) {
    _Forget(rule);
  }
  return IsHiddenItself(*instance, rule) || (parent && _Climb(parent));
}

void HiddenBranches::_Forget(HidingRule rule)
{
  m_rule = rule;
  std::fill(m_slots.begin(), m_slots.end(), Slot());
}

bool HiddenBranches::_Climb(const du::SmartPtr<zelk::BaseInstance>& start)
{
  bool isHidden = false;
  std::size_t steps = 0;
  for (du::SmartPtr<zelk::BaseInstance> above = start; above && !isHidden; Ascend(above)) {
    const Slot* slot = _GetSlot(above.Get());
    if (slot && slot->instance == above.Get()) {
      isHidden = slot->isHidden;
      break;
    }
    isHidden = IsHiddenItself(*above, m_rule);
    ++steps;
  }
  // All that was passed on the way hangs below what decided, or is it.
  _Remember(start, steps, isHidden);
  return isHidden;
}

HiddenBranches::Slot* HiddenBranches::_GetSlot(const zelk::BaseInstance* instance)
{
  if (m_slots.empty()) {
    return nullptr;
  }
  constexpr std::uint64_t golden = 0x9e3779b97f4a7c15;
  const std::uint64_t hash = reinterpret_cast<std::uintptr_t>(instance) * golden;
  return &m_slots[(hash >> 32U) % s_slotCount];
}

void HiddenBranches::_Remember(const du::SmartPtr<zelk::BaseInstance>& start, std::size_t count, bool isHidden)
{
  // Of a long climb only the part near the start, which is needed next: the rest would take all its places.
  const std::size_t kept = std::min(count, m_slots.size() / 2);
  du::SmartPtr<zelk::BaseInstance> above = start;
  for (std::size_t i = 0; i < kept; ++i) {
    *_GetSlot(above.Get()) = {above.Get(), isHidden};
    Ascend(above);
  }
}

}  // namespace zelremote
