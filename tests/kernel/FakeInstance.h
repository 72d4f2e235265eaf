#pragma once

#include <utility>
#include <vector>

#include "zelk/BaseTree.h"
#include "zelk/ComponentInstance.h"

namespace kerneltest {

/// An instance that owns its children. Its destructor does not recurse, so that chains may be deep.
class FakeInstance : public zelk::ComponentInstance {
public:
  FakeInstance() = default;
  FakeInstance(const FakeInstance&) = delete;
  FakeInstance& operator=(const FakeInstance&) = delete;
  ~FakeInstance() override
  {
    std::vector<du::SmartPtr<FakeInstance>> dying = std::exchange(m_children, {});
    while (!dying.empty()) {
      const du::SmartPtr<FakeInstance> last = std::move(dying.back());
      dying.pop_back();
      for (du::SmartPtr<FakeInstance>& child : last->m_children) {
        dying.push_back(std::move(child));
      }
      last->m_children.clear();
    }
  }

  du::SmartPtr<FakeInstance> AddChild()
  {
    auto child = du::MakeSmart<FakeInstance>();
    child->m_parent = this;
    child->m_index = m_children.size();
    m_children.push_back(child);
    return child;
  }

  du::Symbol GetInstanceKey() const override { return {}; }
  bool IsPlainIconInstance() const override { return false; }
  bool IsBodyInstance() const override { return false; }
  du::Symbol GetInstanceSubKey() const override { return {}; }
  void GetPropertyValue(du::SmartPtr<zelk::PropertyValue>& out, const du::Symbol& /*group*/, const du::Symbol& /*name*/,
                        const du::Symbol& /*fallback*/) const override
  {
    out.Reset();
  }
  void GetBaseChildren(std::vector<du::SmartPtr<zelk::BaseInstance>>& out) const override
  {
    out.assign(m_children.begin(), m_children.end());
  }
  void GetBaseFirstChild(du::SmartPtr<zelk::BaseInstance>& out) const override
  {
    out = m_children.empty() ? du::SmartPtr<zelk::BaseInstance>() : m_children.front();
  }
  void GetBaseNextSibling(du::SmartPtr<zelk::BaseInstance>& out) const override
  {
    const bool hasNext = m_parent && m_index + 1 < m_parent->m_children.size();
    const du::SmartPtr<zelk::BaseInstance> next(hasNext ? m_parent->m_children[m_index + 1].Get() : nullptr);
    out = next;
  }
  void GetBaseParent(du::SmartPtr<zelk::BaseInstance>& out) const override
  {
    out = du::SmartPtr<zelk::BaseInstance>(m_parent);
  }
  void GetBaseTree(du::SmartPtr<zelk::BaseTree>& out) const override { out.Reset(); }
  bool HasChildren() const override { return !m_children.empty(); }

  du::SmartPtr<zelk::Instance> GetFirstMultiInstancedSibling() const override { return {}; }
  void GetAllMultiInstancedSibling(std::vector<du::SmartPtr<zelk::Instance>>& out) const override { out.clear(); }
  bool IsFirstMultiInstancedSibling() const override { return false; }
  bool IsMultiInstancedSibling() const override { return false; }
  void GetAnchor(du::SmartPtr<zelk::Anchor>& out) const override { out.Reset(); }
  bool HasNoneBodyChildren() const override { return HasChildren(); }
  bool HasProxyExpandFailed() const override { return false; }
  bool HasShapeSource() const override { return false; }
  bool HasThumbnailSource() const override { return false; }
  bool Is3dSymbol() const override { return false; }
  bool IsBodyTypeInstance() const override { return false; }
  bool IsConstructionBodyTypeInstance() const override { return false; }
  bool IsProxy() const override { return false; }
  bool IsProxyExpanded() const override { return false; }
  bool IsRootContainerRoot() const override { return false; }

private:
  FakeInstance* m_parent = nullptr;
  std::size_t m_index = 0;
  std::vector<du::SmartPtr<FakeInstance>> m_children;
};

}  // namespace kerneltest
