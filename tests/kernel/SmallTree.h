#pragma once

#include "FakeInstance.h"

namespace kerneltest {

/// root with the children a (with a1, a2) and b (with b1).
struct SmallTree {
  du::SmartPtr<FakeInstance> root = du::MakeSmart<FakeInstance>();
  du::SmartPtr<FakeInstance> a = root->AddChild();
  du::SmartPtr<FakeInstance> a1 = a->AddChild();
  du::SmartPtr<FakeInstance> a2 = a->AddChild();
  du::SmartPtr<FakeInstance> b = root->AddChild();
  du::SmartPtr<FakeInstance> b1 = b->AddChild();
};

}  // namespace kerneltest
