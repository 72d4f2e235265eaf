#pragma once

#include <memory>

#include "facade/Pin.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeStateBase.h"

namespace guitree {

/// What an observer callback holds of its `GuiTree`: a pin, and null from the moment on at which the object has ended.
class LiveGuiTree {
public:
  /// `tree` may be null.
  explicit LiveGuiTree(GuiTree* tree) : m_pin(tree), m_liveness(tree ? tree->GetLiveness() : nullptr) {}

  [[nodiscard]] GuiTree* Get() const noexcept { return m_liveness ? *m_liveness : nullptr; }
  /// The tree state, held for as long as it is at work; null without one.
  [[nodiscard]] du::SmartPtr<TreeStateBase> GetState() const
  {
    return Get() ? du::SmartPtr<TreeStateBase>(Get()->GetTreeState()) : nullptr;
  }
  GuiTree* operator->() const noexcept { return Get(); }
  explicit operator bool() const noexcept { return Get() != nullptr; }

private:
  Pin m_pin;
  std::shared_ptr<GuiTree* const> m_liveness;
};

}  // namespace guitree
