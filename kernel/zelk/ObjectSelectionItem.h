#pragma once

#include "zelk/Instance.h"
#include "zelk/MemoryPoolAllocated.h"
#include "zelk/SelectionItem.h"

namespace zelk {

/// The selection of an instance.
class ObjectSelectionItem : public SelectionItem, public MemoryPoolAllocated {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdObjectSelectionItem, "zelk::ObjectSelectionItem",
                                        &SelectionItem::CLASS_TYPE};

  /// `instance` may be null: the item then stands for nothing and is in no list.
  explicit ObjectSelectionItem(const du::SmartPtr<Instance>& instance) : m_object(instance) {}

  [[nodiscard]] du::SmartPtr<Object> GetObject() const { return m_object; }

  /// The name of the instance's class; empty for none.
  [[nodiscard]] du::Symbol GetSelectionType() const override;
  [[nodiscard]] const void* GetIdentity() const override { return m_object.Get(); }
  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }

private:
  du::SmartPtr<Object> m_object;
};

}  // namespace zelk
