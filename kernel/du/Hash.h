#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "du/SmartPtr.h"
#include "du/Symbol.h"

namespace du {

/// Hash functor of `du::HashMap`. Other types fall back to `std::hash`.
template <typename K>
struct hash {
  [[nodiscard]] std::size_t operator()(const K& key) const noexcept { return std::hash<K>{}(key); }
};

/// The address without its two lowest bits, which are the same for all objects of a kernel.
template <typename T>
struct hash<T*> {
  [[nodiscard]] std::size_t operator()(const T* key) const noexcept
  {
    return reinterpret_cast<std::uintptr_t>(key) >> 2;
  }
};

template <typename T>
struct hash<SmartPtr<T>> {
  [[nodiscard]] std::size_t operator()(const SmartPtr<T>& key) const noexcept { return hash<T*>{}(key.Get()); }
};

/// The identity of the symbol, not its text.
template <>
struct hash<Symbol> {
  [[nodiscard]] std::size_t operator()(const Symbol& key) const noexcept { return hash<const char*>{}(key.GetText()); }
};

template <typename K>
using equal_to = std::equal_to<K>;

}  // namespace du
