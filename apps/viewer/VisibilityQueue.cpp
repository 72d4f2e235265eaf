#include "VisibilityQueue.h"

#include <algorithm>
#include <utility>

namespace viewer {

namespace {

bool IsInTree(const zelk::BaseInstance& instance)
{
  du::SmartPtr<zelk::BaseTree> tree;
  instance.GetBaseTree(tree);
  return static_cast<bool>(tree);
}

du::SmartPtr<memkernel::ShapeInstance> FindShape(const memkernel::ShapeScene& scene, const zelk::BaseInstance& instance)
{
  return scene.FindShapeInstance(dynamic_cast<const zelk::Instance*>(&instance));
}

}  // namespace

bool VisibilityQueue::Add(const Instances& tops, bool isVisible)
{
  const bool isNeeded = std::any_of(tops.begin(), tops.end(),
                                    [&](const auto& top) { return top && _WouldChange(Instance(top), isVisible); });
  if (!isNeeded) {
    return false;
  }
  for (Command& older : m_commands) {
    older.isOvertaken = true;
  }
  Command& command = m_commands.emplace_back(Command{{++m_lastNumber, isVisible}, {}});
  for (const auto& top : tops) {
    if (top) {
      command.tops.emplace_back(top);
      m_wishes.insert_or_assign(top.Get(), Wish{m_lastNumber, isVisible, Instance(top)});
    }
  }
  return true;
}

bool VisibilityQueue::GoOn(const QDeadlineTimer& end)
{
  const memkernel::ShapeSceneBatch batch(*m_scene);
  while (!m_commands.empty()) {
    _GoOneStep();
    if (end.hasExpired()) {
      break;
    }
  }
  return m_commands.empty();
}

void VisibilityQueue::Clear()
{
  m_commands.clear();
  m_wishes.clear();
}

// Who is told of the change may bring a new command.
void VisibilityQueue::_GoOneStep()
{
  Command& command = m_commands.back();
  const bool isVisible = command.wish.isVisible;
  const Instance next = _TakeNext(command);
  if (command.levels.empty() && command.begun == command.tops.size()) {
    m_commands.pop_back();
  }
  if (m_commands.empty()) {
    m_wishes.clear();
  }
  const auto shape = next ? FindShape(*m_scene, *next) : nullptr;
  if (shape && shape->IsVisible() != isVisible) {
    m_scene->SetVisible(shape, isVisible);
  }
}

VisibilityQueue::Instance VisibilityQueue::_TakeNext(Command& command) const
{
  if (std::exchange(command.isOvertaken, false)) {
    _LeaveToNewer(command);
  }
  if (command.levels.empty()) {
    return _TakeTop(command);
  }
  Level& level = command.levels.back();
  const Instance next = level.next;
  if (!next) {
    command.levels.pop_back();
    return {};
  }
  if (!IsInTree(*next)) {
    // Those behind it cannot be found any more; what is done already is passed quickly.
    command.levels.clear();
    command.begun = 0;
    return {};
  }
  next->GetBaseNextSibling(level.next);
  return _IsNewer(_GetWish(next.Get()), command.wish) ? Instance() : _Enter(command, next);
}

VisibilityQueue::Instance VisibilityQueue::_TakeTop(Command& command) const
{
  if (command.begun == command.tops.size()) {
    return {};
  }
  const Instance& top = command.tops[command.begun++];
  return !IsInTree(*top) || _IsNewer(_FindWish(top), command.wish) ? Instance() : _Enter(command, top);
}

VisibilityQueue::Instance VisibilityQueue::_Enter(Command& command, const Instance& instance)
{
  Instance child;
  instance->GetBaseFirstChild(child);
  if (child) {
    command.levels.push_back({instance, child});
  }
  return instance;
}

void VisibilityQueue::_LeaveToNewer(Command& command) const
{
  if (!command.levels.empty() && _IsNewer(_FindWish(command.levels.front().parent), command.wish)) {
    command.levels.clear();
  }
  const auto first = std::find_if(command.levels.begin(), command.levels.end(), [&](const Level& level) {
    return _IsNewer(_GetWish(level.parent.Get()), command.wish);
  });
  command.levels.erase(first, command.levels.end());
}

bool VisibilityQueue::_WouldChange(const Instance& top, bool isVisible) const
{
  struct Open {
    Instance instance;
    const Wish* above;
  };
  std::vector<Open> open{{top, _FindWish(top)}};
  while (!open.empty()) {
    const Open at = std::move(open.back());
    open.pop_back();
    const Wish* const own = _GetWish(at.instance.Get());
    const Wish* const wish = own && (!at.above || _IsNewer(own, *at.above)) ? own : at.above;
    const auto shape = FindShape(*m_scene, *at.instance);
    if (shape && (wish ? wish->isVisible : shape->IsVisible()) != isVisible) {
      return true;
    }
    Instance sibling;
    if (at.instance != top) {
      at.instance->GetBaseNextSibling(sibling);
    }
    if (sibling) {
      open.push_back({sibling, at.above});
    }
    Instance child;
    at.instance->GetBaseFirstChild(child);
    if (child) {
      open.push_back({child, wish});
    }
  }
  return false;
}

const VisibilityQueue::Wish* VisibilityQueue::_GetWish(const zelk::BaseInstance* instance) const
{
  const auto found = m_wishes.find(instance);
  return found == m_wishes.end() ? nullptr : &found->second;
}

const VisibilityQueue::Wish* VisibilityQueue::_FindWish(const Instance& instance) const
{
  const Wish* newest = nullptr;
  Instance above = instance;
  while (above && !m_wishes.empty()) {
    const Wish* const wish = _GetWish(above.Get());
    newest = wish && (!newest || _IsNewer(wish, *newest)) ? wish : newest;
    above->GetBaseParent(above);
  }
  return newest;
}

bool VisibilityQueue::_IsNewer(const Wish* wish, const Wish& than)
{
  return wish && wish->number > than.number;
}

}  // namespace viewer
