#pragma once

#include <QDeadlineTimer>
#include <cstddef>
#include <list>
#include <set>
#include <unordered_map>
#include <vector>

#include "du/SmartPtr.h"
#include "memkernel/ShapeScene.h"
#include "zelk/Instance.h"

namespace viewer {

/// Shows and hides branches in a scene, a portion at a time. In the end all is as if the commands had been done one
/// after the other; on the way the newest comes first, and older ones leave out what newer ones are about, so that
/// nothing changes twice. The tree may be edited in between. What comes into a branch meanwhile may be left out.
/// Owner's thread.
class VisibilityQueue {
public:
  using Instances = std::set<du::SmartPtr<zelk::Instance>>;

  explicit VisibilityQueue(const du::SmartPtr<memkernel::ShapeScene>& scene) : m_scene(scene) {}
  VisibilityQueue(const VisibilityQueue&) = delete;
  VisibilityQueue& operator=(const VisibilityQueue&) = delete;
  ~VisibilityQueue() = default;

  /// About all that is in the scene at these instances and below them. Whether any of it is otherwise, or will be by
  /// the commands before; nothing is to be done if not. Linear in the size of the branches up to the first of these.
  bool Add(const Instances& tops, bool isVisible);
  /// Goes on until `end`, by one step at least, and answers whether all commands are done.
  [[nodiscard]] bool GoOn(const QDeadlineTimer& end);
  /// What is not done yet is left.
  void Clear();
  [[nodiscard]] bool IsEmpty() const noexcept { return m_commands.empty(); }

private:
  using Instance = du::SmartPtr<zelk::BaseInstance>;

  /// What is to become of an instance and all below it.
  struct Wish {
    std::size_t number;
    bool isVisible;
    /// Held, so that no other one comes to its address. Null for the wish of a command.
    Instance instance{};
  };
  struct Level {
    Instance parent;
    /// Null at the end of the level.
    Instance next;
  };
  struct Command {
    Wish wish;
    std::vector<Instance> tops;
    std::size_t begun = 0;
    /// Below a top, down to where the command is at work.
    std::vector<Level> levels{};
    /// A newer one has come since this was at work.
    bool isOvertaken = false;
  };

  void _GoOneStep();
  /// Null where this step leads to nothing.
  [[nodiscard]] Instance _TakeNext(Command& command) const;
  [[nodiscard]] Instance _TakeTop(Command& command) const;
  static Instance _Enter(Command& command, const Instance& instance);
  void _LeaveToNewer(Command& command) const;
  [[nodiscard]] bool _WouldChange(const Instance& top, bool isVisible) const;
  /// Null for none.
  [[nodiscard]] const Wish* _GetWish(const zelk::BaseInstance* instance) const;
  /// The newest one at the instance and above it.
  [[nodiscard]] const Wish* _FindWish(const Instance& instance) const;
  [[nodiscard]] static bool _IsNewer(const Wish* wish, const Wish& than);

  const du::SmartPtr<memkernel::ShapeScene> m_scene;
  /// The newest one last, which is the one at work.
  std::list<Command> m_commands;
  /// The newest ones, of commands that are done as well as long as older ones are not.
  std::unordered_map<const zelk::BaseInstance*, Wish> m_wishes;
  std::size_t m_lastNumber = 0;
};

}  // namespace viewer
