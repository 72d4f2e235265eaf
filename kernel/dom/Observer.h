#pragma once

#include "dom/ManagedObject.h"

namespace dom {

/// Somebody who is told of things: by callbacks of a subject at which it is registered, and by messages.
///
/// A subject keeps plain pointers to its observers. So that none of them dangles, it reports each registration here,
/// and an observer class that is released while it is registered may refuse to die until the last subject has dropped
/// it.
class Observer : public ManagedObject {
public:
  /// Owner's thread, in a turn of its loop.
  virtual void HandleMessage(const du::SmartPtr<Message>& message);

  /// For subjects: the observer stands in one more list, or in one less. When the last one goes, an observer that has
  /// refused to die until then is destroyed, so the subject must be done with it. Owner's thread.
  void AddRegistration() const;
  void RemoveRegistration() const;
  [[nodiscard]] bool IsRegistered() const noexcept { return m_registrations != 0; }

protected:
  /// What `ZeroReferenceCountHook` answers for a class whose objects refuse to die while they are registered.
  [[nodiscard]] bool _AgreesToDie() const;

private:
  mutable unsigned int m_registrations = 0;
  mutable bool m_hasRefusedToDie = false;
};

}  // namespace dom
