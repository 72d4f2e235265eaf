#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <vector>

#include "LogPanel.h"
#include "StampedInstance.h"
#include "WalkingModel.h"
#include "memkernel/Tree.h"

namespace sceneinfotest {
namespace {

using namespace guitree;  // NOLINT(google-build-using-namespace): the states are many

using Base = du::SmartPtr<zelk::BaseInstance>;

/// Drawn from the whole range from the first run on: only long lists are counted.
[[nodiscard]] std::size_t DrawBelow(std::size_t end)
{
  return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange<std::size_t>(0, end));
}

/// memkernel, where nothing moves but what is removed and made anew.
class MemKernel {
public:
  using Instance = du::SmartPtr<memkernel::Instance>;

  [[nodiscard]] Instance MakeRoot() { return m_tree->CreateRoot(m_product); }
  [[nodiscard]] Instance Add(const Instance& parent, bool asTheFirst)
  {
    Base first;
    parent->GetBaseFirstChild(first);
    return first && asTheFirst ? m_tree->InsertBefore(du::DynamicCast<memkernel::Instance>(first), m_product)
                               : m_tree->AddChild(parent, m_product);
  }
  void Remove(const Instance& instance) { m_tree->Remove(instance); }
  [[nodiscard]] Instance Move(const Instance& instance, const Instance& parent)
  {
    Remove(instance);
    return parent->IsInTree() ? Add(parent, false) : Instance();
  }
  void Turn3dSymbol(const Instance& instance)
  {
    m_tree->SetFlags(instance, memkernel::Instance3dSymbol, !instance->Is3dSymbol());
  }
  void TurnPromise() {}

private:
  const du::SmartPtr<memkernel::Tree> m_tree = du::MakeSmart<memkernel::Tree>();
  const du::SmartPtr<memkernel::Product> m_product = m_tree->CreateProduct({.name = "P"});
};

/// Instances that move as they are, of a kernel that promises revisions at one time and not at another.
class MovingKernel {
public:
  using Instance = du::SmartPtr<StampedInstance>;

  [[nodiscard]] Instance MakeRoot() { return du::MakeSmart<StampedInstance>(m_kernel); }
  [[nodiscard]] static Instance Add(const Instance& parent, bool /*asTheFirst*/) { return parent->Add(); }
  static void Remove(const Instance& instance) { instance->Detach(); }
  [[nodiscard]] static Instance Move(const Instance& instance, const Instance& parent)
  {
    for (const StampedInstance* above = parent.Get(); above; above = above->parent) {
      if (above == instance.Get()) {
        return instance;
      }
    }
    instance->Detach();
    return parent->Attach(instance);
  }
  static void Turn3dSymbol(const Instance& instance) { instance->Turn3dSymbol(); }
  void TurnPromise() { m_kernel.answersRevisions = !m_kernel.answersRevisions; }

private:
  StampedKernel m_kernel;
};

/// Plays events at random to a log and to the model, and edits the tree that both look at.
template <typename Kernel>
class Player {
public:
  using Instance = typename Kernel::Instance;

  Player() : m_instances{m_kernel.MakeRoot()}
  {
    // Long lists and short ones, on three levels.
    for (std::size_t parent = 0; parent < 3; ++parent) {
      const auto count = 1 + DrawBelow(40);
      for (std::size_t i = 0; i < count; ++i) {
        m_instances.push_back(m_kernel.Add(m_instances[parent], false));
      }
    }
  }

  void PlayOne()
  {
    static const std::vector<void (Player::*)()> s_events{
        &Player::_SetPlain,    &Player::_SetPlain,    &Player::_SetPlain,     &Player::_SetState, &Player::_SetAllBelow,
        &Player::_SetAllBelow, &Player::_SetAllBelow, &Player::_ForceHidden,  &Player::_Forget,   &Player::_AddUntold,
        &Player::_AddTold,     &Player::_AddTold,     &Player::_Remove,       &Player::_Move,     &Player::_MoveTold,
        &Player::_Turn,        &Player::_TurnPromise, &Player::_ClearChanges, &Player::_Copy,     &Player::_BindLate};
    (this->*s_events[DrawBelow(s_events.size())])();
  }

  void RequireAgreement()
  {
    const auto toMap = [](const auto& table) { return WalkingModel::States(table.begin(), table.end()); };
    RC_ASSERT(toMap(_GetLog().GetVisibleMap()) == m_model.GetStates());
    RC_ASSERT(toMap(_GetLog().GetVisibleChangeMap()) == m_model.GetChanges());

    SceneInfoLog probe(_GetLog());
    WalkingModel walk(m_model);
    for (std::size_t i = 0; i < std::min(m_instances.size(), s_parents); ++i) {
      probe.SetVisible(m_instances[i].Get(), CompHidden, false);
      walk.SetVisible(m_instances[i].Get(), CompHidden, false);
    }
    RC_ASSERT(toMap(probe.GetVisibleMap()) == walk.GetStates());
  }

private:
  /// So few get children that their lists are long.
  static constexpr std::size_t s_parents = 4;

  [[nodiscard]] SceneInfoLog& _GetLog() const { return m_panel.GetLog(); }
  [[nodiscard]] const Instance& _Pick() const { return m_instances[DrawBelow(m_instances.size())]; }
  [[nodiscard]] const Instance& _PickParent() const
  {
    return m_instances[DrawBelow(std::min(m_instances.size(), s_parents))];
  }
  /// Null if there is the root alone.
  [[nodiscard]] Instance _PickBelowRoot() const
  {
    return m_instances.size() == 1 ? Instance() : m_instances[1 + DrawBelow(m_instances.size() - 1)];
  }

  void _SetPlain() { _SetPlainOf(_Pick()); }
  void _SetPlainOf(const Instance& instance)
  {
    const auto visible = *rc::gen::weightedElement<ECompVisible>(
        {{6, CompVisible}, {6, CompHidden}, {1, CompThumbnailVisible}, {1, CompThumbnailHidden}});
    const bool propagate = *rc::gen::weightedElement<bool>({{5, true}, {1, false}});
    _GetLog().SetVisible(instance.Get(), visible, propagate);
    m_model.SetVisible(instance.Get(), visible, propagate);
  }
  /// A parent whose children are all alike tells what else has changed; one that is mixed hides it.
  void _SetAllBelow()
  {
    const ECompVisible visible = *rc::gen::arbitrary<bool>() ? CompVisible : CompHidden;
    std::vector<Base> children;
    _PickParent()->GetBaseChildren(children);
    for (const Base& child : children) {
      _GetLog().SetVisible(child.Get(), visible, true);
      m_model.SetVisible(child.Get(), visible, true);
    }
  }
  void _SetState()
  {
    const auto& instance = _Pick();
    const int state = static_cast<int>(DrawBelow(9));
    const bool changed = _GetLog().SetVisible(instance.Get(), static_cast<VisibleState>(state));
    RC_ASSERT(changed == m_model.SetVisible(instance.Get(), state));
  }
  void _ForceHidden()
  {
    const auto& instance = _Pick();
    _GetLog().ForceVisibleToHidden(instance.Get());
    m_model.SetVisible(instance.Get(), VisibleStateHidden);
  }
  void _Forget() { _ForgetOne(_Pick()); }
  void _ForgetOne(const Instance& instance)
  {
    _GetLog().RemoveFromLog(instance.Get());
    m_model.Remove(instance.Get());
  }

  void _AddUntold() { m_instances.push_back(m_kernel.Add(_PickParent(), *rc::gen::arbitrary<bool>())); }
  void _AddTold()
  {
    const Instance parent = _PickParent();
    _Tell(m_kernel.Add(parent, *rc::gen::arbitrary<bool>()), parent);
  }
  /// In either order, and with an event in between that changes the state of some child.
  void _Tell(const Instance& child, const Instance& parent)
  {
    const bool forgetsFirst = *rc::gen::arbitrary<bool>();
    if (forgetsFirst) {
      _ForgetOne(child);
    }
    if (*rc::gen::weightedElement<bool>({{1, true}, {4, false}})) {
      _SetPlain();
    }
    for (int notes = *rc::gen::weightedElement<int>({{8, 1}, {1, 2}, {1, 3}}); notes > 0; --notes) {
      m_panel.GetGuiTree().NoteChildAdded(child, parent);
    }
    if (!forgetsFirst) {
      _ForgetOne(child);
    }
    m_instances.push_back(child);
  }
  void _Remove()
  {
    if (const Instance instance = _PickBelowRoot()) {
      m_kernel.Remove(instance);
      _DropWhatIsGone();
    }
  }
  void _Move()
  {
    if (const Instance instance = _PickBelowRoot()) {
      const Instance moved = m_kernel.Move(instance, Instance(_PickParent()));
      _DropWhatIsGone();
      if (moved && moved != instance) {
        m_instances.push_back(moved);
      }
    }
  }
  /// As a kernel announces it that makes two edits of a move.
  void _MoveTold()
  {
    const Instance instance = _PickBelowRoot();
    const Instance parent = _PickParent();
    if (const Instance moved = instance ? m_kernel.Move(instance, parent) : Instance()) {
      m_instances.erase(std::remove(m_instances.begin(), m_instances.end(), instance), m_instances.end());
      _Tell(moved, parent);
    }
    _DropWhatIsGone();
  }
  void _DropWhatIsGone()
  {
    const Instance root = m_instances.front();
    const auto isGone = [&root](const Instance& instance) {
      Base above(instance);
      while (above && above != root) {
        above->GetBaseParent(above);
      }
      return !above;
    };
    m_instances.erase(std::remove_if(m_instances.begin(), m_instances.end(), isGone), m_instances.end());
  }
  void _Turn() { m_kernel.Turn3dSymbol(_Pick()); }
  void _TurnPromise() { m_kernel.TurnPromise(); }

  void _ClearChanges()
  {
    _GetLog().ClearVisibleChangeMap();
    m_model.ClearChanges();
  }
  void _Copy()
  {
    const SceneInfoLog copy(_GetLog());
    _GetLog() = copy;
  }
  /// A log that hears of some instances only when their scene is shown.
  void _BindLate()
  {
    _GetLog().Initialise(_GetLog().GetScene());
    m_model.Clear();
    const auto count = DrawBelow(20);
    for (std::size_t i = 0; i < count; ++i) {
      _SetPlain();
    }
  }

  Kernel m_kernel;
  LogPanel m_panel;
  WalkingModel m_model;
  /// Those in the tree, the root first.
  std::vector<Instance> m_instances;
};

template <typename Kernel>
void PlayManyEvents()
{
  Player<Kernel> player;
  const auto events = 1 + DrawBelow(100);
  for (std::size_t i = 0; i < events; ++i) {
    player.PlayOne();
    player.RequireAgreement();
  }
}

RC_GTEST_PROP(VisibilityProperty, AfterAnyEventsOnMemKernel_AllStatesAreThoseOfTheWalk, ())
{
  PlayManyEvents<MemKernel>();
}

RC_GTEST_PROP(VisibilityProperty, AfterAnyEventsOnInstancesThatMove_AllStatesAreThoseOfTheWalk, ())
{
  PlayManyEvents<MovingKernel>();
}

}  // namespace
}  // namespace sceneinfotest
