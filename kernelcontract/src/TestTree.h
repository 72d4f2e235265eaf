#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "kernelcontract/KernelUnderTest.h"

namespace kernelcontract {

using Names = std::map<const zelk::BaseInstance*, std::string>;

/// The tree that most cases begin with, known by name:
///
///     root
///       a         (product of its own)
///         a1
///         a2
///           x
///       b         (product "bolt")
///       c         (product "bolt")
///       d         (product of its own)
class TestTree {
public:
  explicit TestTree(KernelUnderTest& kernel);

  [[nodiscard]] const du::SmartPtr<zelk::Instance>& operator[](const std::string& name) const
  {
    return m_instances.at(name);
  }
  [[nodiscard]] Names GetNames() const;

private:
  du::SmartPtr<zelk::Instance> _Add(KernelUnderTest& kernel, const du::SmartPtr<zelk::Instance>& parent,
                                    const std::string& product, const std::string& name);

  std::map<std::string, du::SmartPtr<zelk::Instance>> m_instances;
};

/// The instances of a visit, in its order.
[[nodiscard]] std::vector<du::SmartPtr<zelk::BaseInstance>> Visit(const zelk::BaseTree& tree);

/// Runs the owner's loop until the condition holds; false if that takes longer than any kernel may.
[[nodiscard]] bool RunUntil(KernelUnderTest& kernel, const std::function<bool()>& isDone);

}  // namespace kernelcontract
