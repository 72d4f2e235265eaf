#pragma once

#include <string_view>
#include <vector>

#include "zelk/BaseInstance.h"
#include "zelk/BaseTree.h"

namespace testsupport {

/// A node that is no `zelk::Instance`, as a tree of another kind has them: alone in the world.
class PlainBaseInstance : public zelk::BaseInstance {
public:
  explicit PlainBaseInstance(std::string_view name) : m_name(name) {}

  [[nodiscard]] du::Symbol GetObjectName() const override { return m_name; }
  [[nodiscard]] du::Symbol GetInstanceKey() const override { return m_name; }
  [[nodiscard]] bool IsPlainIconInstance() const override { return false; }
  [[nodiscard]] bool IsBodyInstance() const override { return false; }
  [[nodiscard]] du::Symbol GetInstanceSubKey() const override { return {}; }
  void GetPropertyValue(du::SmartPtr<zelk::PropertyValue>& out, const du::Symbol& /*group*/, const du::Symbol& /*name*/,
                        const du::Symbol& /*fallback*/) const override
  {
    out.Reset();
  }
  void GetBaseChildren(std::vector<du::SmartPtr<zelk::BaseInstance>>& out) const override { out.clear(); }
  void GetBaseFirstChild(du::SmartPtr<zelk::BaseInstance>& out) const override { out.Reset(); }
  void GetBaseNextSibling(du::SmartPtr<zelk::BaseInstance>& out) const override { out.Reset(); }
  void GetBaseParent(du::SmartPtr<zelk::BaseInstance>& out) const override { out.Reset(); }
  void GetBaseTree(du::SmartPtr<zelk::BaseTree>& out) const override { out.Reset(); }
  [[nodiscard]] bool HasChildren() const override { return false; }

private:
  du::Symbol m_name;
};

}  // namespace testsupport
