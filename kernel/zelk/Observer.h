#pragma once

#include "dom/Observer.h"

namespace zelk {

/// Base of the observers of trees, scenes and views. Every callback of every observer has an empty default, so a kernel
/// calls what it supports and an observer overrides what it wants to know. Owner's thread only.
class Observer : public dom::Observer {
public:
  /// Whether runs of callbacks must be bracketed; true by default. Kernels bracket every run, single callbacks
  /// included.
  [[nodiscard]] virtual bool RequiresBeginEnd() const;
  virtual void OnBeginUpdate();
  virtual void OnEndUpdate();
  /// The subject has dropped the observer by itself, because it ends; no callback follows.
  virtual void OnUnregister();

  /// Refuses while the observer is registered; the subject that drops it last ends its life.
  [[nodiscard]] bool ZeroReferenceCountHook() const override;

  /// Entry of messages, reached through `HandleMessage`.
  virtual void EventHandler(const du::SmartPtr<dom::Message>& message);

  void HandleMessage(const du::SmartPtr<dom::Message>& message) final;
};

}  // namespace zelk
