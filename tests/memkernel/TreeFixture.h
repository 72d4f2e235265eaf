#pragma once

#include <gmock/gmock.h>

#include <string>

#include "Recorders.h"
#include "memkernel/Tree.h"

namespace memkerneltest {

using InstancePtr = du::SmartPtr<memkernel::Instance>;

/// A tree with the root "R" and a recorder that has heard nothing of it.
class TreeFixture : public testing::Test {
protected:
  TreeFixture() { tree->RegisterObserver(*recorder, false); }
  ~TreeFixture() override { tree->UnregisterObserver(*recorder); }

  [[nodiscard]] du::SmartPtr<memkernel::Product> MakeProduct(const char* name, unsigned int flags = 0)
  {
    return tree->CreateProduct({.name = name, .flags = flags});
  }
  /// A child of a product of its own.
  InstancePtr Add(const InstancePtr& parent, const char* name, unsigned int flags = 0)
  {
    return tree->AddChild(parent, MakeProduct(name, flags));
  }
  [[nodiscard]] std::string GetText(const InstancePtr& instance, const du::Symbol& group, const du::Symbol& name,
                                    const du::Symbol& fallback = {}) const
  {
    du::SmartPtr<zelk::PropertyValue> value;
    instance->GetPropertyValue(value, group, name, fallback);
    std::string text = "null";
    if (value) {
      value->GetValueAsString(text);
    }
    return text;
  }
  /// The tree below an instance as `A(B C(D))`.
  [[nodiscard]] std::string Draw(const InstancePtr& top) const
  {
    std::string text = NameOf(top);
    std::vector<du::SmartPtr<zelk::BaseInstance>> children;
    top->GetBaseChildren(children);
    std::string inside;
    for (const auto& child : children) {
      inside += (inside.empty() ? "" : " ") + Draw(du::DynamicCast<memkernel::Instance>(child));
    }
    return inside.empty() ? text : text.append("(").append(inside).append(")");
  }
  [[nodiscard]] unsigned int GetCount() const
  {
    unsigned int count = 0;
    tree->GetNumInstances(count);
    return count;
  }

  const du::SmartPtr<memkernel::Tree> tree = du::MakeSmart<memkernel::Tree>();
  const InstancePtr root = tree->CreateRoot(tree->CreateProduct({.name = "R"}));
  const du::SmartPtr<TreeRecorder> recorder = du::MakeSmart<TreeRecorder>();
};

}  // namespace memkerneltest
