#pragma once

#include "dom/MessageQueue.h"
#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "du/Symbol.h"

namespace dom {

/// An object that belongs to one thread, that of its message queue. The host makes the topmost one with the queue of
/// its kernel; whatever is put under it takes the queue over. Managing is a link, not ownership: the manager neither
/// keeps its objects alive nor needs to outlive them. All operations: owner's thread, unless they say otherwise.
class ManagedObject : public virtual du::RefCounted {
public:
  /// Not managed by anybody.
  ManagedObject() = default;
  /// The top of a hierarchy. A null queue leaves the object, and everything under it, without messages.
  explicit ManagedObject(const du::SmartPtr<MessageQueue>& queue);
  ManagedObject(const ManagedObject&) = delete;
  ManagedObject& operator=(const ManagedObject&) = delete;
  ~ManagedObject() override;

  /// Puts `object` under this one, so that its messages arrive on this object's thread, and tells it by `OnManage`.
  /// False, and nothing done, for null, for this object itself, for an object that is managed already, and when this
  /// object has no queue.
  virtual bool ManageObject(const du::SmartPtr<ManagedObject>& object);

  /// The queue of the topmost manager; null for an object that is not managed.
  [[nodiscard]] const du::SmartPtr<MessageQueue>& GetMessageQueue() const noexcept { return m_queue; }

  /// Class information for kernels that keep any; the defaults tell of none.
  [[nodiscard]] virtual du::Symbol GetBaseClass(unsigned int index) const;
  [[nodiscard]] virtual unsigned int GetBaseClassCount() const;
  [[nodiscard]] virtual du::Symbol GetBaseClassParent(unsigned int index) const;
  /// -1 for a class that is no base.
  [[nodiscard]] virtual int BaseClassOffsetByName(const du::Symbol& name) const;
  [[nodiscard]] virtual du::Symbol GetObjectClass() const;

  virtual void HandleTimeoutEvent();
  virtual void HandleOnIdleEvent();
  /// The object has just been put under a manager.
  virtual void OnManage();

private:
  du::SmartPtr<MessageQueue> m_queue;
};

}  // namespace dom
