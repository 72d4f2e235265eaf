#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

#include "du/RefCounted.h"

namespace du {

namespace detail {

/// A class whose definition is not visible everywhere offers these two functions beside its declaration (for a nested
/// class: as friends of the enclosing class). They are found by argument-dependent look-up, which needs no definition.
// clang-format off
template <typename T>
concept HasSmartPtrHooks = requires(const T* object, void* owner)
{
  {
    AddSmartPtrReference(object, owner)
    } -> std::same_as<int>;
  {
    AttemptDeleteSmartPtrReference(object, owner)
    } -> std::same_as<bool>;
};
// clang-format on

template <typename T>
void Acquire(const T* object, void* owner)
{
  if constexpr (HasSmartPtrHooks<T>) {
    AddSmartPtrReference(object, owner);
  } else {
    object->AddReference(owner);
  }
}

template <typename T>
void Release(const T* object, void* owner)
{
  if constexpr (HasSmartPtrHooks<T>) {
    AttemptDeleteSmartPtrReference(object, owner);
  } else {
    ReleaseReference(object, owner);
  }
}

}  // namespace detail

/// Counted reference to a `du::RefCounted` object, with value semantics. `T` may be a class that is only declared, as
/// long as the places that copy, assign or destroy the pointer see its definition or its two hooks.
///
/// One pointer object belongs to one thread at a time; two pointers to one object may live in two threads.
template <typename T>
class SmartPtr {
public:
  using element_type = T;

  SmartPtr() noexcept = default;
  SmartPtr(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor): null is a value of every pointer

  /// Takes a reference on `object`, which may be null. Never for an object that lives on the stack or in another
  /// object: the last holder deletes it.
  explicit SmartPtr(T* object) : m_object(object) { _Acquire(); }

  SmartPtr(const SmartPtr& other) : m_object(other.m_object) { _Acquire(); }
  SmartPtr(SmartPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}

  // clang-format off
  template <typename U>
    requires(!std::same_as<U, T> && std::convertible_to<U*, T*>)
  SmartPtr(const SmartPtr<U>& other)  // NOLINT(google-explicit-constructor): as for raw pointers
      : m_object(other.Get())
  {
    _Acquire();
  }

  template <typename U>
    requires(!std::same_as<U, T> && std::convertible_to<U*, T*>)
  SmartPtr(SmartPtr<U>&& other) noexcept  // NOLINT(google-explicit-constructor): as for raw pointers
      : m_object(other._Detach())
  {
  }
  // clang-format on

  ~SmartPtr() { Reset(); }

  /// The new object is acquired before the old one is let go of; the same object is left alone.
  SmartPtr& operator=(const SmartPtr& other)  // NOLINT(bugprone-unhandled-self-assignment): it holds one object
  {
    if (m_object != other.m_object) {
      // The other pointer may be a member of the object that dies here.
      T* former = std::exchange(m_object, other.m_object);
      _Acquire();
      _Release(former);
    }
    return *this;
  }

  SmartPtr& operator=(SmartPtr&& other) noexcept
  {
    if (this != &other) {
      _Release(std::exchange(m_object, other._Detach()));
    }
    return *this;
  }

  SmartPtr& operator=(std::nullptr_t) noexcept
  {
    Reset();
    return *this;
  }

  /// Lets go of the object, if there is one. The pointer is null already while the object dies.
  void Reset() noexcept { _Release(std::exchange(m_object, nullptr)); }

  void Swap(SmartPtr& other) noexcept { std::swap(m_object, other.m_object); }

  [[nodiscard]] T* Get() const noexcept { return m_object; }
  T& operator*() const noexcept { return *m_object; }
  T* operator->() const noexcept { return m_object; }
  explicit operator bool() const noexcept { return m_object != nullptr; }

private:
  template <typename U>
  friend class SmartPtr;

  void _Acquire()
  {
    if (m_object) {
      detail::Acquire(m_object, this);
    }
  }

  void _Release(T* former) noexcept
  {
    if (former) {
      detail::Release(former, this);
    }
  }

  T* _Detach() noexcept { return std::exchange(m_object, nullptr); }

  T* m_object = nullptr;
};

/// A reference through which the object cannot be changed. A `SmartPtr<T>` converts to it.
template <typename T>
using ConstSmartPtr = SmartPtr<const T>;

template <typename T, typename U>
[[nodiscard]] bool operator==(const SmartPtr<T>& a, const SmartPtr<U>& b) noexcept
{
  return a.Get() == b.Get();
}

template <typename T, typename U>
[[nodiscard]] bool operator==(const SmartPtr<T>& a, const U* b) noexcept
{
  return a.Get() == b;
}

template <typename T>
[[nodiscard]] bool operator==(const SmartPtr<T>& a, std::nullptr_t) noexcept
{
  return a.Get() == nullptr;
}

/// The order of addresses, that of `std::less`.
template <typename T>
[[nodiscard]] std::strong_ordering operator<=>(const SmartPtr<T>& a, const SmartPtr<T>& b) noexcept
{
  return std::compare_three_way{}(a.Get(), b.Get());
}

/// Creates an object that nobody else holds.
template <typename T, typename... Args>
[[nodiscard]] SmartPtr<T> MakeSmart(Args&&... args)
{
  return SmartPtr<T>(new T(std::forward<Args>(args)...));
}

/// The object as a `T`, or null when it is none or when there is no object.
template <typename T, typename U>
[[nodiscard]] SmartPtr<T> DynamicCast(const SmartPtr<U>& pointer)
{
  return SmartPtr<T>(dynamic_cast<T*>(pointer.Get()));
}

}  // namespace du
