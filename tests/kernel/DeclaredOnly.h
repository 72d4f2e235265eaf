#pragma once

#include <string>
#include <vector>

#include "du/SmartPtr.h"

namespace kerneltest {

/// Defined in DeclaredOnly.cpp alone, and without hooks: whoever holds one leaves every use to that file.
class Hidden;

class HiddenHolder {
public:
  explicit HiddenHolder(bool& isAlive);
  HiddenHolder(const HiddenHolder& other);
  HiddenHolder(HiddenHolder&& other) noexcept;
  HiddenHolder& operator=(const HiddenHolder& other);
  HiddenHolder& operator=(HiddenHolder&& other) noexcept;
  ~HiddenHolder();

  [[nodiscard]] bool IsEmpty() const { return m_hidden == nullptr; }

private:
  du::SmartPtr<Hidden> m_hidden;
};

/// Defined in DeclaredOnly.cpp alone, with hooks: it can be copied and released everywhere.
class Hooked;
int AddSmartPtrReference(const Hooked* object, void* owner);
bool AttemptDeleteSmartPtrReference(const Hooked* object, void* owner);

du::SmartPtr<Hooked> MakeHooked();

/// What the hooks of `Hooked` were called with, in order.
struct HookCall {
  std::string what;
  void* owner;

  friend bool operator==(const HookCall&, const HookCall&) = default;
};
std::vector<HookCall>& GetHookCalls();

/// With a nested class whose hooks are its friends.
class Outer {
public:
  class Inner;
  friend int AddSmartPtrReference(const Inner* object, void* owner);
  friend bool AttemptDeleteSmartPtrReference(const Inner* object, void* owner);

  [[nodiscard]] static du::SmartPtr<Inner> MakeInner(bool& isAlive);
};

}  // namespace kerneltest
