#include "DeclaredOnly.h"

namespace kerneltest {

class Hidden : public virtual du::RefCounted {
public:
  explicit Hidden(bool& isAlive) : m_isAlive(isAlive) { m_isAlive = true; }
  Hidden(const Hidden&) = delete;
  Hidden& operator=(const Hidden&) = delete;
  ~Hidden() override { m_isAlive = false; }

private:
  bool& m_isAlive;
};

HiddenHolder::HiddenHolder(bool& isAlive) : m_hidden(du::MakeSmart<Hidden>(isAlive)) {}
HiddenHolder::HiddenHolder(const HiddenHolder& other) = default;
HiddenHolder::HiddenHolder(HiddenHolder&& other) noexcept = default;
HiddenHolder& HiddenHolder::operator=(const HiddenHolder& other) = default;
HiddenHolder& HiddenHolder::operator=(HiddenHolder&& other) noexcept = default;
HiddenHolder::~HiddenHolder() = default;

class Hooked : public virtual du::RefCounted {};

int AddSmartPtrReference(const Hooked* object, void* owner)
{
  GetHookCalls().push_back({"add", owner});
  return object->AddReference(owner);
}

bool AttemptDeleteSmartPtrReference(const Hooked* object, void* owner)
{
  const bool isGone = du::ReleaseReference(object, owner);
  GetHookCalls().push_back({isGone ? "delete" : "release", owner});
  return isGone;
}

du::SmartPtr<Hooked> MakeHooked()
{
  return du::MakeSmart<Hooked>();
}

std::vector<HookCall>& GetHookCalls()
{
  static std::vector<HookCall> s_calls;
  return s_calls;
}

class Outer::Inner : public Hidden {
public:
  using Hidden::Hidden;
};

int AddSmartPtrReference(const Outer::Inner* object, void* owner)
{
  return object->AddReference(owner);
}

bool AttemptDeleteSmartPtrReference(const Outer::Inner* object, void* owner)
{
  return du::ReleaseReference(object, owner);
}

du::SmartPtr<Outer::Inner> Outer::MakeInner(bool& isAlive)
{
  return du::MakeSmart<Inner>(isAlive);
}

}  // namespace kerneltest
