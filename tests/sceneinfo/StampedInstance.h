#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "FakeInstance.h"

namespace sceneinfotest {

/// What the stamped instances of one test share.
struct StampedKernel {
  bool answersRevisions = true;
  /// Where the revisions of the next instance begin.
  std::uint64_t nextRange = 1U << 20U;
};

/// An instance that holds its children and stamps the list of them. A test edits it without telling anybody.
class StampedInstance : public kerneltest::FakeInstance {
public:
  explicit StampedInstance(StampedKernel& shared) : kernel(shared), revision(shared.nextRange)
  {
    shared.nextRange += 1U << 20U;
  }
  StampedInstance(const StampedInstance&) = delete;
  StampedInstance& operator=(const StampedInstance&) = delete;
  ~StampedInstance() override
  {
    for (const auto& child : children) {
      child->parent = nullptr;
    }
  }

  StampedKernel& kernel;
  StampedInstance* parent = nullptr;
  std::vector<du::SmartPtr<StampedInstance>> children;
  bool is3dSymbol = false;
  std::uint64_t revision;
  /// How often one of the children, or the end behind them, has been asked for.
  mutable int looks = 0;

  du::SmartPtr<StampedInstance> Add() { return Attach(du::MakeSmart<StampedInstance>(kernel)); }
  /// As the last child; not for one that has a parent.
  du::SmartPtr<StampedInstance> Attach(const du::SmartPtr<StampedInstance>& child)
  {
    child->parent = this;
    children.push_back(child);
    ++revision;
    return child;
  }
  /// From its parent, which it must have. The caller holds it.
  void Detach()
  {
    auto& siblings = parent->children;
    parent->revision += 2;
    parent = nullptr;
    siblings.erase(std::find_if(siblings.begin(), siblings.end(), [this](const auto& each) { return each == this; }));
  }
  void Turn3dSymbol()
  {
    is3dSymbol = !is3dSymbol;
    if (parent) {
      parent->revision += 2;
    }
  }

  [[nodiscard]] std::uint64_t GetChildListRevision() const override { return kernel.answersRevisions ? revision : 0; }
  [[nodiscard]] bool Is3dSymbol() const override { return is3dSymbol; }
  [[nodiscard]] bool HasChildren() const override { return !children.empty(); }
  void GetBaseChildren(std::vector<du::SmartPtr<zelk::BaseInstance>>& out) const override
  {
    out.assign(children.begin(), children.end());
  }
  void GetBaseFirstChild(du::SmartPtr<zelk::BaseInstance>& out) const override
  {
    ++looks;
    out = children.empty() ? du::SmartPtr<zelk::BaseInstance>() : children.front();
  }
  void GetBaseNextSibling(du::SmartPtr<zelk::BaseInstance>& out) const override
  {
    du::SmartPtr<zelk::BaseInstance> next;
    if (parent) {
      ++parent->looks;
      const auto& siblings = parent->children;
      const auto own =
          std::find_if(siblings.begin(), siblings.end(), [this](const auto& each) { return each == this; });
      if (own + 1 != siblings.end()) {
        next = *(own + 1);
      }
    }
    out = next;
  }
  void GetBaseParent(du::SmartPtr<zelk::BaseInstance>& out) const override
  {
    out = du::SmartPtr<zelk::BaseInstance>(parent);
  }
};

}  // namespace sceneinfotest
