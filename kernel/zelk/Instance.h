#pragma once

#include <set>
#include <vector>

#include "zelk/Anchor.h"
#include "zelk/BaseInstance.h"

namespace zelk {

/// A node of the assembly tree. Threads as for `BaseInstance`.
///
/// Siblings that show the same product are multi-instanced siblings of each other; the first of them in the order of
/// the children stands for the group where groups are collapsed.
class Instance : public BaseInstance {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdInstance, "zelk::Instance", &BaseInstance::CLASS_TYPE};

  /// The first instance of the group, which may be this one; this one for an instance without a group.
  [[nodiscard]] virtual du::SmartPtr<Instance> GetFirstMultiInstancedSibling() const = 0;
  /// Replaces `out` with the whole group in the order of the children, this instance included. Costs the number of
  /// siblings.
  virtual void GetAllMultiInstancedSibling(std::vector<du::SmartPtr<Instance>>& out) const = 0;
  /// False for an instance without a group.
  [[nodiscard]] virtual bool IsFirstMultiInstancedSibling() const = 0;
  /// Whether the instance has a group, that is, at least one sibling of the same product. Asked for every row: must not
  /// cost the number of siblings.
  [[nodiscard]] virtual bool IsMultiInstancedSibling() const = 0;

  /// Overwrites `out`; null for an instance without an anchor.
  virtual void GetAnchor(du::SmartPtr<Anchor>& out) const = 0;

  /// Whether at least one child is no body.
  [[nodiscard]] virtual bool HasNoneBodyChildren() const = 0;
  [[nodiscard]] virtual bool HasProxyExpandFailed() const = 0;
  [[nodiscard]] virtual bool HasShapeSource() const = 0;
  [[nodiscard]] virtual bool HasThumbnailSource() const = 0;
  /// A symbol of a drawing standard placed in space. Has no row and does not count for the visibility of its parent.
  [[nodiscard]] virtual bool Is3dSymbol() const = 0;
  [[nodiscard]] virtual bool IsBodyTypeInstance() const = 0;
  [[nodiscard]] virtual bool IsConstructionBodyTypeInstance() const = 0;
  /// Stands for the content of another file that has not been read.
  [[nodiscard]] virtual bool IsProxy() const = 0;
  [[nodiscard]] virtual bool IsProxyExpanded() const = 0;
  [[nodiscard]] virtual bool IsRootContainerRoot() const = 0;

  [[nodiscard]] const ClassType& GetClassTypes() const override;

  /// As `BaseInstance::GetInstancesAndDescendents`; descendants that are no `Instance` are left out.
  static void GetInstancesAndDescendents(const std::set<du::SmartPtr<Instance>>& in,
                                         std::set<du::SmartPtr<Instance>>& out);
};

/// The same object as an instance of an assembly; null for one of another kind, and for null. It goes by the class
/// number: rows ask this by the million, and it takes less than half the time of a dynamic_cast. Any thread.
[[nodiscard]] inline const Instance* AsInstance(const BaseInstance* instance)
{
  return instance && instance->IsATypeOfId(ClassIdInstance) ? static_cast<const Instance*>(instance) : nullptr;
}

}  // namespace zelk
