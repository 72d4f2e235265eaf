#include "memkernel/Tree.h"

#include <algorithm>
#include <string>
#include <utility>

#include "ChildListRevisions.h"
#include "InstanceBits.h"
#include "SiblingGroups.h"
#include "TreeLink.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace memkernel {
namespace {

constexpr unsigned int s_proxyFlags = InstanceProxy | InstanceProxyExpanded | InstanceProxyExpandFailed;

bool IsDynamicProperty(const du::Symbol& group, const du::Symbol& name, const du::Symbol& dynamicName)
{
  return group == zelk::BaseInstanceDynamicPropertiesCache::s_GroupName && name == dynamicName;
}

}  // namespace

TreeBatch::TreeBatch(Tree& tree) : m_tree(&tree)
{
  m_tree->m_observers.BeginRun();
}

TreeBatch::~TreeBatch()
{
  m_tree->m_observers.EndRun();
}

Tree::Tree()
    : m_link(du::MakeSmart<TreeLink>(this)),
      m_groups(std::make_unique<SiblingGroups>()),
      m_revisions(std::make_unique<ChildListRevisions>())
{
}

Tree::~Tree()
{
  m_observers.Tell([](zelk::TreeObserver& observer) { observer.OnDestroy(); });
  m_observers.DropAll();
  const WriteGuard guard(m_lock);
  m_link->tree = nullptr;
}

du::SmartPtr<Product> Tree::CreateProduct(const ProductInfo& info)
{
  return du::SmartPtr<Product>(new Product(m_link, _MakeKey(info), info));
}

du::SmartPtr<Instance> Tree::CreateRoot(const du::SmartPtr<Product>& product, const du::Symbol& name)
{
  if (m_root || !_IsOwn(product.Get()) || IsTellingObservers()) {
    return {};
  }
  auto root = _MakeInstance(product, name);
  root->_SetFlags(InstanceBaseRoot, true);
  {
    const WriteGuard guard(_GetLockForEdit());
    const std::lock_guard rootLock(m_rootMutex);
    root->_SetFlags(InstanceInTree, true);
    m_root = root;
    ++m_count;
  }
  _TellCreated(root, {});
  return root;
}

du::SmartPtr<Instance> Tree::AddChild(const du::SmartPtr<Instance>& parent, const du::SmartPtr<Product>& product,
                                      const du::Symbol& name)
{
  if (!_CanEdit(parent.Get()) || !_IsOwn(product.Get())) {
    return {};
  }
  return _Insert(parent, nullptr, product, name);
}

du::SmartPtr<Instance> Tree::InsertBefore(const du::SmartPtr<Instance>& sibling, const du::SmartPtr<Product>& product,
                                          const du::Symbol& name)
{
  if (!_CanEdit(sibling.Get()) || sibling == m_root || !_IsOwn(product.Get())) {
    return {};
  }
  return _Insert(du::SmartPtr<Instance>(sibling->m_parent), sibling.Get(), product, name);
}

bool Tree::Remove(const du::SmartPtr<Instance>& instance)
{
  if (!_CanEdit(instance.Get())) {
    return false;
  }
  // The argument may be a member of something that goes with the instance.
  const du::SmartPtr<Instance> top(instance.Get());
  const TreeBatch batch(*this);
  const auto parent = _TakeOut(top);
  _TellRemoved(top, parent);
  return true;
}

bool Tree::Rename(const du::SmartPtr<Instance>& instance, const du::Symbol& name)
{
  if (!_CanEdit(instance.Get())) {
    return false;
  }
  const du::SmartPtr<Instance> renamed(instance.Get());
  const du::Symbol before = renamed->GetObjectName();
  {
    const WriteGuard guard(_GetLockForEdit());
    if (!name.IsEmpty()) {
      renamed->_GetOwn().name = du::MakeSmart<TextValue>(name);
    } else if (renamed->m_own) {
      renamed->m_own->name.Reset();
    }
  }
  if (renamed->GetObjectName() != before) {
    _Tell([renamed](zelk::TreeObserver& observer) { observer.OnInstanceName(renamed); });
  }
  return true;
}

bool Tree::RenameProduct(const du::SmartPtr<Product>& product, const du::Symbol& name)
{
  if (!_IsOwn(product.Get()) || IsTellingObservers()) {
    return false;
  }
  if (product->GetName() == name) {
    return true;
  }
  {
    const WriteGuard guard(_GetLockForEdit());
    product->m_name = du::MakeSmart<TextValue>(name);
  }
  NotifyDisplayNamesChanged();
  return true;
}

bool Tree::SetProperty(const du::SmartPtr<Instance>& instance, const du::Symbol& group, const du::Symbol& name,
                       const du::Symbol& value)
{
  if (!_CanEdit(instance.Get()) || IsDynamicProperty(group, name, Instance::s_displayName)) {
    return false;
  }
  if (IsDynamicProperty(group, name, Instance::s_partId)
      && (value.IsEmpty() || value == zelk::ComponentInstance::ROOT_INSTANCE_ID)) {
    return false;
  }
  const du::SmartPtr<Instance> changed(instance.Get());
  {
    const WriteGuard guard(_GetLockForEdit());
    changed->_GetOwn().properties.Set(group, name, value);
  }
  _Tell([changed](zelk::TreeObserver& observer) { observer.OnInstancePropertiesChanged(changed); });
  return true;
}

bool Tree::RemoveProperty(const du::SmartPtr<Instance>& instance, const du::Symbol& group, const du::Symbol& name)
{
  if (!_CanEdit(instance.Get()) || !instance->m_own || !instance->m_own->properties.Find(group, name)) {
    return false;
  }
  const du::SmartPtr<Instance> changed(instance.Get());
  {
    const WriteGuard guard(_GetLockForEdit());
    changed->m_own->properties.Remove(group, name);
  }
  _Tell([changed](zelk::TreeObserver& observer) { observer.OnInstancePropertiesChanged(changed); });
  return true;
}

bool Tree::SetProductProperty(const du::SmartPtr<Product>& product, const du::Symbol& group, const du::Symbol& name,
                              const du::Symbol& value)
{
  if (!_IsOwn(product.Get()) || IsTellingObservers() || IsDynamicProperty(group, name, Instance::s_displayName)
      || IsDynamicProperty(group, name, Instance::s_partId)) {
    return false;
  }
  const WriteGuard guard(_GetLockForEdit());
  product->m_properties.Set(group, name, value);
  return true;
}

bool Tree::SetFlags(const du::SmartPtr<Instance>& instance, unsigned int flags, bool on)
{
  if (!_CanEdit(instance.Get()) || (flags & ~InstanceAllFlags) != 0 || (flags & s_proxyFlags) != 0) {
    return false;
  }
  const du::SmartPtr<Instance> changed(instance.Get());
  if (_ChangeFlags(*changed, flags, on)) {
    _Tell([changed](zelk::TreeObserver& observer) { observer.OnInstancePropertiesChanged(changed); });
  }
  return true;
}

bool Tree::SetAnchor(const du::SmartPtr<Instance>& instance, const du::SmartPtr<zelk::Anchor>& anchor)
{
  if (!_CanEdit(instance.Get())) {
    return false;
  }
  const WriteGuard guard(_GetLockForEdit());
  instance->_GetOwn().anchor = anchor;
  return true;
}

bool Tree::ExpandProxy(const du::SmartPtr<Instance>& instance)
{
  if (!_CanEdit(instance.Get()) || !instance->IsProxy()) {
    return false;
  }
  const du::SmartPtr<Instance> proxy(instance.Get());
  const bool hadFailed = _ChangeFlags(*proxy, InstanceProxyExpandFailed, false);
  if (_ChangeFlags(*proxy, InstanceProxyExpanded, true) || hadFailed) {
    _Tell([proxy](zelk::TreeObserver& observer) { observer.OnInstanceExpanded(proxy); });
  }
  return true;
}

bool Tree::CollapseProxy(const du::SmartPtr<Instance>& instance)
{
  if (!_CanEdit(instance.Get()) || !instance->IsProxy()) {
    return false;
  }
  const du::SmartPtr<Instance> proxy(instance.Get());
  const TreeBatch batch(*this);
  while (proxy->m_firstChild) {
    Remove(du::SmartPtr<Instance>(proxy->m_firstChild));
  }
  if (_ChangeFlags(*proxy, InstanceProxyExpanded, false)) {
    _Tell([proxy](zelk::TreeObserver& observer) { observer.OnInstanceCollapsed(proxy); });
  }
  return true;
}

bool Tree::FailProxy(const du::SmartPtr<Instance>& instance)
{
  if (!_CanEdit(instance.Get()) || !instance->IsProxy()) {
    return false;
  }
  const du::SmartPtr<Instance> proxy(instance.Get());
  const bool wasExpanded = _ChangeFlags(*proxy, InstanceProxyExpanded, false);
  if (_ChangeFlags(*proxy, InstanceProxyExpandFailed, true) || wasExpanded) {
    _Tell([proxy](zelk::TreeObserver& observer) { observer.OnInstanceExpanded(proxy); });
  }
  return true;
}

bool Tree::TurnProxyToNode(const du::SmartPtr<Instance>& instance)
{
  if (!_CanEdit(instance.Get()) || !instance->IsProxy()) {
    return false;
  }
  const du::SmartPtr<Instance> node(instance.Get());
  _ChangeFlags(*node, s_proxyFlags, false);
  _Tell([node](zelk::TreeObserver& observer) { observer.OnInstanceProxyToNode(node); });
  return true;
}

bool Tree::AddViewable(const du::SmartPtr<Instance>& instance, const du::SmartPtr<zelk::Object>& viewable)
{
  if (!_CanEdit(instance.Get())) {
    return false;
  }
  const du::SmartPtr<Instance> changed(instance.Get());
  const auto data = du::MakeSmart<zelk::ViewableData>();
  data->viewable = viewable;
  {
    const WriteGuard guard(_GetLockForEdit());
    changed->_GetOwn().viewables.push_back(data);
  }
  _Tell([changed, data](zelk::TreeObserver& observer) { observer.OnInstanceAddViewable(changed, data); });
  return true;
}

bool Tree::RemoveViewable(const du::SmartPtr<Instance>& instance, const du::SmartPtr<zelk::Object>& viewable)
{
  if (!_CanEdit(instance.Get()) || !instance->m_own) {
    return false;
  }
  const du::SmartPtr<Instance> changed(instance.Get());
  auto& viewables = changed->m_own->viewables;
  const auto found = std::find_if(viewables.begin(), viewables.end(),
                                  [&](const auto& record) { return record->viewable == viewable; });
  if (found == viewables.end()) {
    return false;
  }
  const du::SmartPtr<zelk::ViewableData> data = *found;
  {
    const WriteGuard guard(_GetLockForEdit());
    viewables.erase(found);
  }
  _Tell([changed, data](zelk::TreeObserver& observer) { observer.OnInstanceRemoveViewable(changed, data); });
  return true;
}

void Tree::NotifyTreeColumnsChanged()
{
  _Tell([](zelk::TreeObserver& observer) { observer.OnTreeColumnsChanged(); });
}

void Tree::NotifyDisplayNamesChanged()
{
  _Tell([](zelk::TreeObserver& observer) { observer.OnDisplayNamesChanged(); });
}

void Tree::NotifyPropertyGroupsLoaded()
{
  _Tell([](zelk::TreeObserver& observer) { observer.OnPropertyGroupsLoaded(); });
}

void Tree::NotifyModelExtentsChanged()
{
  _Tell([](zelk::TreeObserver& observer) { observer.OnModelExtentsChanged(); });
}

void Tree::NotifyPropertyGroupAdded(const du::Symbol& group)
{
  _Tell([group](zelk::TreeObserver& observer) { observer.OnAddPropertyGroup(group); });
}

void Tree::NotifyPropertyGroupRemoved(const du::Symbol& group)
{
  _Tell([group](zelk::TreeObserver& observer) { observer.OnRemovePropertyGroup(group); });
}

void Tree::Close()
{
  const du::SmartPtr<Tree> self(this);
  m_observers.Tell([](zelk::TreeObserver& observer) { observer.OnDestroy(); });
  m_observers.DropAll();
}

du::SmartPtr<Instance> Tree::GetRootInstance() const
{
  const std::lock_guard lock(m_rootMutex);
  return m_root;
}

void Tree::GetBaseRoot(du::SmartPtr<zelk::BaseInstance>& out) const
{
  out = GetRootInstance();
}

void Tree::GetRoot(du::SmartPtr<zelk::Instance>& out) const
{
  out = GetRootInstance();
}

void Tree::GetNumInstances(unsigned int& out) const
{
  out = m_count.load(std::memory_order_relaxed);
}

void Tree::Visit(zelk::BaseInstanceVisitor& visitor, VisitType /*type*/) const
{
  const du::SmartPtr<Instance> root = GetRootInstance();
  du::SmartPtr<zelk::BaseInstance> current = root;
  while (current && visitor.VisitInstance(current)) {
    const Instance* next = static_cast<const Instance*>(current.Get())->_GetNextInSubtree(root.Get());
    current = du::SmartPtr<zelk::BaseInstance>(const_cast<Instance*>(next));
  }
}

bool Tree::RegisterObserver(zelk::TreeObserver& observer, bool replay)
{
  if (!m_observers.Add(observer)) {
    return false;
  }
  if (replay) {
    const du::SmartPtr<Tree> self(this);
    m_observers.Replay(observer, [&](const auto& tell) {
      const Instance* const root = m_root.Get();
      for (const Instance* next = root; next; next = next->_GetNextInSubtree(root)) {
        const du::SmartPtr<zelk::BaseInstance> instance(const_cast<Instance*>(next));
        const du::SmartPtr<zelk::BaseInstance> parent(next->m_parent);
        const auto create = [&](zelk::TreeObserver& told) {
          told.OnInstanceCreate(instance, parent, instance->GetObjectName());
        };
        if (!tell(create)) {
          return;
        }
      }
    });
  }
  return true;
}

bool Tree::UnregisterObserver(zelk::BaseTreeObserver& observer)
{
  const du::SmartPtr<Tree> self(m_observers.IsDropped() ? nullptr : this);
  return m_observers.Remove(observer);
}

bool Tree::_CanEdit(const Instance* instance) const
{
  return instance && !IsTellingObservers() && instance->_Has(InstanceInTree) && _IsOwn(instance->m_product.Get());
}

bool Tree::_IsOwn(const Product* product) const
{
  return product && product->m_tree == m_link;
}

du::Symbol Tree::_MakeKey(const ProductInfo& info)
{
  du::Symbol base = info.key.IsEmpty() ? info.name : info.key;
  if (base.IsEmpty()) {
    base = "Product";
  }
  if (m_keys.try_emplace(base.GetText(), 1U).second) {
    return base;
  }
  while (true) {
    const unsigned int number = ++m_keys[base.GetText()];
    const du::Symbol key(std::string_view(std::string(base).append("#").append(std::to_string(number))));
    if (m_keys.try_emplace(key.GetText(), 1U).second) {
      return key;
    }
  }
}

const du::Symbol& Tree::_GetSubKey(unsigned int number)
{
  while (m_subKeys.size() < number) {
    m_subKeys.emplace_back(std::string_view(std::to_string(m_subKeys.size() + 1)));
  }
  return m_subKeys[number - 1];
}

du::SmartPtr<Instance> Tree::_MakeInstance(const du::SmartPtr<Product>& product, const du::Symbol& name)
{
  const du::Symbol& subKey = _GetSubKey(++product->m_lastSubKey);
  du::SmartPtr<Instance> instance(new Instance(product, subKey));
  if (!name.IsEmpty() && name != product->GetName()) {
    instance->_GetOwn().name = du::MakeSmart<TextValue>(name);
  }
  return instance;
}

du::SmartPtr<Instance> Tree::_Insert(const du::SmartPtr<Instance>& parent, Instance* next,
                                     const du::SmartPtr<Product>& product, const du::Symbol& name)
{
  auto instance = _MakeInstance(product, name);
  instance->AddReference(nullptr);
  {
    const WriteGuard guard(_GetLockForEdit());
    parent->_LinkChild(instance.Get(), next);
    m_groups->OnLinked(*parent, *instance);
    instance->_SetFlags(InstanceInTree, true);
    m_count.fetch_add(1, std::memory_order_relaxed);
  }
  m_revisions->OnChildAdded(*parent);
  if (!m_observers.IsEmpty()) {
    const du::SmartPtr<Instance> kept(parent.Get());
    _TellCreated(instance, kept);
  }
  return instance;
}

du::SmartPtr<Instance> Tree::_TakeOut(const du::SmartPtr<Instance>& top)
{
  du::SmartPtr<Instance> parent(top->m_parent);
  const WriteGuard guard(_GetLockForEdit());
  if (parent) {
    m_groups->OnUnlinking(*parent, *top);
    parent->_UnlinkChild(top.Get());
    du::ReleaseReference(top.Get(), nullptr);
    m_revisions->OnOtherChange(*parent);
  } else {
    const std::lock_guard rootLock(m_rootMutex);
    m_root.Reset();
  }
  _LeaveTree(*top);
  return parent;
}

ReadWriteLock& Tree::_GetLockForEdit()
{
  if (m_editGate && m_lock.IsRead()) {
    m_editGate();
  }
  return m_lock;
}

void Tree::_LeaveTree(Instance& top)
{
  unsigned int count = 0;
  for (const Instance* next = &top; next; next = next->_GetNextInSubtree(&top)) {
    auto& leaving = const_cast<Instance&>(*next);
    if (next != &top) {
      leaving._SetFlags(InstanceInTree, false);
    }
    m_groups->Forget(leaving);
    m_revisions->Forget(leaving);
    ++count;
  }
  // Last: who asks the top without the lock, and finds it out of the tree, finds everything below it finished.
  top._SetFlags(InstanceInTree, false);
  m_count.fetch_sub(count, std::memory_order_relaxed);
}

bool Tree::_ChangeFlags(Instance& instance, unsigned int flags, bool on)
{
  const unsigned int before = instance._GetFlags();
  {
    const WriteGuard guard(_GetLockForEdit());
    instance._SetFlags(flags, on);
  }
  const unsigned int changed = instance._GetFlags() ^ before;
  if ((changed & Instance3dSymbol) != 0 && instance.m_parent) {
    m_revisions->OnOtherChange(*instance.m_parent);
  }
  return changed != 0;
}

template <typename Call>
void Tree::_Tell(Call call)
{
  if (!m_observers.IsEmpty()) {
    // The tree may lose its last holder in a callback.
    const du::SmartPtr<Tree> self(this);
    m_observers.Tell(std::move(call));
  }
}

void Tree::_TellCreated(const du::SmartPtr<Instance>& instance, const du::SmartPtr<Instance>& parent)
{
  _Tell([instance, parent, name = instance->GetObjectName()](zelk::TreeObserver& observer) {
    observer.OnInstanceCreate(instance, parent, name);
  });
}

void Tree::_TellRemoved(const du::SmartPtr<Instance>& top, const du::SmartPtr<Instance>& parent)
{
  if (m_observers.IsEmpty()) {
    return;
  }
  _Tell([top, parent](zelk::TreeObserver& observer) { observer.OnInstanceRemove(top, parent); });
  for (const Instance* next = top->_GetNextInSubtree(top.Get()); next; next = next->_GetNextInSubtree(top.Get())) {
    const du::SmartPtr<Instance> instance(const_cast<Instance*>(next));
    const du::SmartPtr<Instance> itsParent(next->m_parent);
    _Tell([instance, itsParent](zelk::TreeObserver& observer) { observer.OnInstanceRemove(instance, itsParent); });
  }
}

const Instance* Tree::_FindFirstOfGroup(const Instance& parent, const Product& product) const
{
  return m_groups->GetFirst(parent, product);
}

std::uint64_t Tree::_GetChildListRevision(const Instance& parent)
{
  return m_revisions->Get(parent);
}

}  // namespace memkernel
