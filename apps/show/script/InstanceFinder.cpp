#include "script/InstanceFinder.h"

#include <algorithm>

#include "script/ScriptError.h"
#include "zelk/BaseInstanceVisitor.h"

namespace script {

namespace {

using InstancePtr = du::SmartPtr<memkernel::Instance>;
using BaseInstancePtr = du::SmartPtr<zelk::BaseInstance>;

/// Collects the instances of one name.
class NameVisitor : public zelk::BaseInstanceVisitor {
public:
  explicit NameVisitor(const std::string& name) : m_name(name) {}

  bool VisitInstance(const BaseInstancePtr& instance) override
  {
    if (instance->GetObjectName() == m_name) {
      found.push_back(du::DynamicCast<memkernel::Instance>(instance));
    }
    return true;
  }

  std::vector<InstancePtr> found;

private:
  const du::Symbol m_name;
};

std::vector<BaseInstancePtr> GetChildren(const zelk::BaseInstance& parent)
{
  std::vector<BaseInstancePtr> children;
  parent.GetBaseChildren(children);
  return children;
}

void Choose(std::vector<InstancePtr>& found, const PathStep& step)
{
  if (step.number == 0) {
    return;
  }
  if (step.number > found.size()) {
    throw ScriptError("there is no " + ToText({.steps = {step}}) + ", the number of matches is "
                      + std::to_string(found.size()));
  }
  found = {found[step.number - 1]};
}

PathStep MakeStep(const zelk::BaseInstance& instance, const BaseInstancePtr& parent)
{
  const du::Symbol name = instance.GetObjectName();
  PathStep step{std::string(name)};
  if (!parent) {
    return step;
  }
  std::size_t count = 0;
  for (const BaseInstancePtr& child : GetChildren(*parent)) {
    count += child->GetObjectName() == name ? 1U : 0U;
    step.number = child.Get() == &instance ? count : step.number;
  }
  step.number = count > 1 ? step.number : 0;
  return step;
}

}  // namespace

InstancePtr InstanceFinder::Find(const Path& path) const
{
  Instances found = _FindFirst(path);
  Choose(found, path.steps.front());
  for (auto step = path.steps.begin() + 1; step != path.steps.end(); ++step) {
    found = _FindChildren(found, *step);
    Choose(found, *step);
  }
  if (found.empty()) {
    throw ScriptError((path.steps.size() > 1 ? "no instance is at " : "no instance is named ") + ToText(path));
  }
  if (found.size() > 1) {
    throw ScriptError(std::to_string(found.size()) + " instances are meant by " + ToText(path)
                      + ": name a parent before it, or add #1 to #" + std::to_string(found.size()));
  }
  return found.front();
}

Path InstanceFinder::MakePath(const memkernel::Instance& instance)
{
  Path path;
  path.isFromRoot = true;
  BaseInstancePtr parent;
  instance.GetBaseParent(parent);
  path.steps.push_back(MakeStep(instance, parent));
  while (parent) {
    const BaseInstancePtr child = parent;
    child->GetBaseParent(parent);
    path.steps.push_back(MakeStep(*child, parent));
  }
  std::reverse(path.steps.begin(), path.steps.end());
  return path;
}

InstanceFinder::Instances InstanceFinder::_FindFirst(const Path& path) const
{
  const std::string& name = path.steps.front().name;
  if (path.isFromRoot) {
    const InstancePtr root = m_tree.GetRootInstance();
    return root && root->GetObjectName() == name ? Instances{root} : Instances{};
  }
  NameVisitor visitor(name);
  m_tree.Visit(visitor, zelk::BaseTree::VisitParentsFirst);
  return std::move(visitor.found);
}

InstanceFinder::Instances InstanceFinder::_FindChildren(const Instances& parents, const PathStep& step)
{
  const du::Symbol name(step.name);
  Instances found;
  for (const InstancePtr& parent : parents) {
    for (const BaseInstancePtr& child : GetChildren(*parent)) {
      if (child->GetObjectName() == name) {
        found.push_back(du::DynamicCast<memkernel::Instance>(child));
      }
    }
  }
  return found;
}

std::vector<InstancePtr> ListSubtree(const InstancePtr& top)
{
  std::vector<InstancePtr> listed;
  std::vector<InstancePtr> waiting{top};
  while (!waiting.empty()) {
    listed.push_back(waiting.back());
    waiting.pop_back();
    const std::vector<BaseInstancePtr> children = GetChildren(*listed.back());
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      waiting.push_back(du::DynamicCast<memkernel::Instance>(*child));
    }
  }
  return listed;
}

}  // namespace script
