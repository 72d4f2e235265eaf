#pragma once

#include "du/RefCounted.h"
#include "facade/Retirement.h"

namespace guitree {

/// Keeps an object alive for the length of a scope if somebody counts it, so that a callback on the way may drop the
/// last reference. An object that nobody counts, one on the stack say, is left to its owner. The scope is that of an
/// operation of the library, which `Retirement` goes by.
class Pin {
public:
  explicit Pin(const du::RefCounted* object)
  {
    if (!object) {
      return;
    }
    const bool isCounted = object->AddReference(this) > 1;
    if (isCounted) {
      m_object = object;
    } else {
      object->RemoveReference(this);
    }
  }
  ~Pin()
  {
    if (m_object) {
      du::ReleaseReference(m_object, this);
    }
  }
  Pin(const Pin&) = delete;
  Pin& operator=(const Pin&) = delete;

private:
  const Retirement m_operation;
  const du::RefCounted* m_object = nullptr;
};

/// Pins two objects.
class Pins {
public:
  Pins(const du::RefCounted* first, const du::RefCounted* second) : m_first(first), m_second(second) {}

private:
  Pin m_first;
  Pin m_second;
};

}  // namespace guitree
