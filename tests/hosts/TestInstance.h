#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "guitree/GuiInterface.h"
#include "guitree/TreeSelectionController.h"
#include "zelk/BaseTree.h"
#include "zelk/Instance.h"

namespace hosttest {

class TextValue : public zelk::PropertyValue {
public:
  explicit TextValue(const du::Symbol& text) : m_text(text) {}

  void GetValueAsSymbol(du::Symbol& out) const override { out = m_text; }
  void GetValueAsString(std::string& out) const override { out = m_text; }

private:
  du::Symbol m_text;
};

/// An instance that is what its members say. Nobody owns its parent: a test keeps all its instances.
class TestInstance : public zelk::Instance {
public:
  explicit TestInstance(std::string_view name, TestInstance* under = nullptr) : objectName(name), parent(under) {}

  du::Symbol objectName;
  du::Symbol displayName;
  du::Symbol referencedFile;
  TestInstance* parent;
  bool isProxy = false;
  bool isProxyExpanded = false;
  bool hasProxyExpandFailed = false;

  du::Symbol GetObjectName() const override { return objectName; }
  void GetPropertyValue(du::SmartPtr<zelk::PropertyValue>& out, const du::Symbol& group, const du::Symbol& name,
                        const du::Symbol& /*fallback*/) const override
  {
    out.Reset();
    const du::Symbol& value = name == "Display Name" ? displayName : referencedFile;
    if (group == "Instance" && (name == "Display Name" || name == "Referenced File") && !value.IsEmpty()) {
      out = du::MakeSmart<TextValue>(value);
    }
  }
  void GetBaseParent(du::SmartPtr<zelk::BaseInstance>& out) const override
  {
    out = du::SmartPtr<zelk::BaseInstance>(parent);
  }
  bool HasProxyExpandFailed() const override { return hasProxyExpandFailed; }
  bool IsProxy() const override { return isProxy; }
  bool IsProxyExpanded() const override { return isProxyExpanded; }

  du::Symbol GetInstanceKey() const override { return objectName; }
  du::Symbol GetInstanceSubKey() const override { return {}; }
  bool IsPlainIconInstance() const override { return false; }
  bool IsBodyInstance() const override { return false; }
  void GetBaseChildren(std::vector<du::SmartPtr<zelk::BaseInstance>>& out) const override { out.clear(); }
  void GetBaseFirstChild(du::SmartPtr<zelk::BaseInstance>& out) const override { out.Reset(); }
  void GetBaseNextSibling(du::SmartPtr<zelk::BaseInstance>& out) const override { out.Reset(); }
  void GetBaseTree(du::SmartPtr<zelk::BaseTree>& out) const override { out.Reset(); }
  bool HasChildren() const override { return false; }
  du::SmartPtr<zelk::Instance> GetFirstMultiInstancedSibling() const override { return {}; }
  void GetAllMultiInstancedSibling(std::vector<du::SmartPtr<zelk::Instance>>& out) const override { out.clear(); }
  bool IsFirstMultiInstancedSibling() const override { return false; }
  bool IsMultiInstancedSibling() const override { return false; }
  void GetAnchor(du::SmartPtr<zelk::Anchor>& out) const override { out.Reset(); }
  bool HasNoneBodyChildren() const override { return false; }
  bool HasShapeSource() const override { return false; }
  bool HasThumbnailSource() const override { return false; }
  bool Is3dSymbol() const override { return false; }
  bool IsBodyTypeInstance() const override { return false; }
  bool IsConstructionBodyTypeInstance() const override { return false; }
  bool IsRootContainerRoot() const override { return false; }
};

using Instance = du::SmartPtr<TestInstance>;

inline Instance Make(std::string_view name, const Instance& parent = {})
{
  return du::MakeSmart<TestInstance>(name, parent.Get());
}

/// Tells the host of a row under the instance's own parent.
inline void Create(guitree::GuiInterface& host, const Instance& instance)
{
  host.InstanceCreate(instance, du::SmartPtr<zelk::BaseInstance>(instance->parent), {}, false);
}

}  // namespace hosttest
