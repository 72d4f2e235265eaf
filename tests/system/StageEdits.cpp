// How edits of the tree are played.

#include <utility>

#include "Choose.h"
#include "Stage.h"

namespace systemtest {
namespace {

constexpr std::size_t s_mostInstances = 500;

const std::vector<std::string> s_parts{"bolt", "nut", "plate", "ring", "gear", "cast", "icon"};
const std::vector<std::string> s_assemblies{"unit", "frame"};
const std::vector<std::string> s_proxies{"file", "part file"};
const std::vector<std::string> s_bodies{"body", "sheet"};
const std::vector<std::string> s_symbols{"note"};
const std::vector<std::string> s_names{"x1", "x2", "alpha", "bolt", "boxed nut", ""};

}  // namespace

void Stage::_PlayEdit(const Event& event)
{
  using enum EventKind;
  switch (event.kind) {
    case AddPart:
      return _Add(event, s_parts, "part");
    case AddAssembly:
      return _Add(event, s_assemblies, "assembly");
    case AddProxy:
      return _Add(event, s_proxies, "proxy");
    case AddBody:
      return _Add(event, s_bodies, nullptr);
    case AddSymbol:
      return _Add(event, s_symbols, nullptr);
    case AddMany:
      return _AddMany(event);
    case Remove:
      return _Remove(event);
    case Rename:
    case RenameProduct:
      return _Rename(event);
    case ColumnsChanged:
      _Remark(event);
      return m_kernel.tree->NotifyTreeColumnsChanged();
    case BeginBatch:
      return _BeginBatch();
    case EndBatch:
      return _EndBatch();
    default:
      return _ChangeProxy(event);
  }
}

void Stage::_Add(const Event& event, const std::vector<std::string>& names, const char* verb)
{
  const auto all = _ListTree();
  if (all.empty()) {
    _Say("add assembly /" + _NameOfNew("top"));
    m_everMade.push_back(m_kernel.tree->CreateRoot(_GetProduct("top")));
    return;
  }
  if (all.size() > s_mostInstances) {
    return;
  }
  const InstancePtr parent = Choose(all, event.first);
  const std::string& name = Choose(names, event.second);
  const std::string path = _PathOf(*parent) + '/' + _NameOfNew(name);
  _Say(std::string("add ") + (verb ? verb : "part") + ' ' + path + (verb ? "" : "  # of its own kind"));
  _AddOne(parent, name);
}

void Stage::_AddOne(const InstancePtr& parent, const std::string& product)
{
  const InstancePtr added = m_kernel.tree->AddChild(parent, _GetProduct(product));
  m_everMade.push_back(added);
  if (!added->HasShapeSource()) {
    return;
  }
  for (const Place& place : m_places) {
    if (place.hasScene && place.content) {
      place.content->CreateShapeInstance(added);
    }
  }
}

// Around and beyond what is told row by row.
void Stage::_AddMany(const Event& event)
{
  const auto all = _ListTree();
  if (all.empty() || all.size() > s_mostInstances / 2) {
    return;
  }
  const bool ownsBatch = !m_treeBatch;
  if (ownsBatch) {
    _BeginBatch();
  }
  const InstancePtr parent = Choose(all, event.first);
  const std::size_t count = 198 + event.second % 5;
  _Say("repeat " + std::to_string(count) + " add assembly " + _PathOf(*parent) + '/' + _NameOfNew("unit"));
  for (std::size_t i = 0; i < count; ++i) {
    _AddOne(parent, "unit");
  }
  if (ownsBatch) {
    _EndBatch();
  }
}

void Stage::_Remove(const Event& event)
{
  const InstancePtr gone = _Pick(event.first);
  // The root goes seldom, since everything goes with it.
  if (gone && (gone != m_kernel.tree->GetRootInstance() || event.second % 8 == 0)) {
    _Say("remove " + _PathOf(*gone));
    m_kernel.tree->Remove(gone);
  }
}

void Stage::_Rename(const Event& event)
{
  const InstancePtr renamed = _Pick(event.first);
  if (!renamed) {
    return;
  }
  const std::string& name = Choose(s_names, event.second);
  if (event.kind == EventKind::Rename) {
    const std::string path = _PathOf(*renamed);
    m_kernel.tree->Rename(renamed, du::Symbol(name));
    _Say("rename " + path + ' ' + _Quote(std::string(renamed->GetObjectName())));
  } else if (!name.empty()) {
    _RenameProduct(renamed->GetProduct(), name);
  }
}

// A script can rename instances alone: from the last one up, so that the paths of those before stay good.
void Stage::_RenameProduct(const du::SmartPtr<memkernel::Product>& product, const std::string& name)
{
  std::vector<std::pair<InstancePtr, std::string>> before;
  for (const InstancePtr& instance : _ListTree()) {
    before.emplace_back(instance, _PathOf(*instance));
  }
  std::vector<std::string> names;
  for (const auto& [instance, path] : before) {
    names.push_back(instance->GetObjectName());
  }
  m_kernel.tree->RenameProduct(product, du::Symbol(name));
  _Say("# RenameProduct");
  for (std::size_t i = before.size(); i > 0; --i) {
    if (names[i - 1] != std::string(before[i - 1].first->GetObjectName())) {
      _Say("rename " + before[i - 1].second + ' ' + _Quote(name));
    }
  }
}

void Stage::_ChangeProxy(const Event& event)
{
  std::vector<InstancePtr> proxies = _ListTree();
  std::erase_if(proxies, [](const InstancePtr& instance) { return !instance->IsProxy(); });
  if (proxies.empty()) {
    return;
  }
  const InstancePtr proxy = Choose(proxies, event.first);
  using enum EventKind;
  const char* const word = event.kind == ExpandProxy     ? "expand "
                           : event.kind == CollapseProxy ? "collapse "
                           : event.kind == FailProxy     ? "fail "
                                                         : "settle ";
  _Say(std::string("proxy ") + word + _PathOf(*proxy));
  memkernel::Tree& tree = *m_kernel.tree;
  switch (event.kind) {
    case ExpandProxy:
      tree.ExpandProxy(proxy);
      return;
    case CollapseProxy:
      tree.CollapseProxy(proxy);
      return;
    case FailProxy:
      tree.FailProxy(proxy);
      return;
    default:
      tree.TurnProxyToNode(proxy);
      return;
  }
}

void Stage::_BeginBatch()
{
  if (m_treeBatch) {
    return;
  }
  _Say("batch");
  m_treeBatch = std::make_unique<memkernel::TreeBatch>(*m_kernel.tree);
  for (const Place& place : m_places) {
    if (place.hasScene && place.content) {
      m_sceneBatches.push_back(std::make_unique<memkernel::ShapeSceneBatch>(*place.content));
    }
  }
}

void Stage::_EndBatch()
{
  if (!m_treeBatch) {
    return;
  }
  _Say("end");
  m_treeBatch.reset();
  m_sceneBatches.clear();
}

}  // namespace systemtest
