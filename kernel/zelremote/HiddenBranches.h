#pragma once

#include <cstddef>
#include <vector>

#include "du/SmartPtr.h"
#include "zelk/BaseInstance.h"

namespace zelremote {

/// What is left out of a tree, with everything below it.
struct HidingRule {
  bool bodies = false;
  /// Of siblings that show the same product, all but the first.
  bool laterSiblings = false;

  [[nodiscard]] bool IsOn() const noexcept { return bodies || laterSiblings; }
  friend bool operator==(const HidingRule&, const HidingRule&) noexcept = default;
};

/// Tells what stands on a hidden branch. By itself it climbs to the top of the tree for each instance; with a memory
/// it climbs but a step or two during a walk, however deep the tree is. One thread at a time.
class HiddenBranches {
public:
  HiddenBranches() = default;
  /// A copy of one with a memory has one as well, but remembers nothing yet.
  HiddenBranches(const HiddenBranches& other);
  HiddenBranches& operator=(const HiddenBranches& other);
  ~HiddenBranches() = default;

  /// From now on what is known of an instance is trusted until the top of a tree, or another rule, is asked for.
  /// Between two such questions the tree must not change.
  void BeginToRemember();

  /// Whether the rule hides the instance, which is not null, or one above it.
  [[nodiscard]] bool IsHidden(const du::SmartPtr<zelk::BaseInstance>& instance, HidingRule rule);

private:
  /// The address is compared and never followed.
  struct Slot {
    const zelk::BaseInstance* instance = nullptr;
    /// Whether the instance, or one above it, is hidden.
    bool isHidden = false;
  };

  void _Forget(HidingRule rule);
  [[nodiscard]] bool _Climb(const du::SmartPtr<zelk::BaseInstance>& start);
  /// Null without a memory.
  [[nodiscard]] Slot* _GetSlot(const zelk::BaseInstance* instance);
  void _Remember(const du::SmartPtr<zelk::BaseInstance>& start, std::size_t count, bool isHidden);

  HidingRule m_rule;
  /// Each instance has one place in it, which it shares with others; the last to be remembered has it.
  std::vector<Slot> m_slots;
};

}  // namespace zelremote
