#pragma once

#include <memory>

#include "facade/Pin.h"
#include "guitree/GuiTree.h"

namespace guitree {

/// What an observer callback holds of its `GuiTree`: it pins the object, and finds out when a host has ended it all the
/// same, by destroying an uncounted one.
class LiveGuiTree {
public:
  /// `tree` may be null.
  explicit LiveGuiTree(GuiTree* tree) : m_pin(tree), m_liveness(tree ? tree->GetLiveness() : nullptr) {}

  [[nodiscard]] GuiTree* Get() const noexcept { return m_liveness ? *m_liveness : nullptr; }
  GuiTree* operator->() const noexcept { return Get(); }
  explicit operator bool() const noexcept { return Get() != nullptr; }

private:
  Pin m_pin;
  std::shared_ptr<GuiTree* const> m_liveness;
};

}  // namespace guitree
