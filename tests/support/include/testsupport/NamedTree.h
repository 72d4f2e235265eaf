#pragma once

#include <map>
#include <string>
#include <string_view>

#include "memkernel/Tree.h"

namespace testsupport {

/// A kernel tree written as text: `NamedTree tree("root[a[b c] d]")`. Each name is a product of its own; a name that
/// comes several times is several instances of one product.
class NamedTree {
public:
  /// The text must be well formed; an empty text is an empty tree. It grows in `tree`, which must be empty.
  explicit NamedTree(std::string_view text,
                     const du::SmartPtr<memkernel::Tree>& tree = du::MakeSmart<memkernel::Tree>());

  [[nodiscard]] const du::SmartPtr<memkernel::Tree>& Get() const noexcept { return m_tree; }
  /// The first instance of that name, in the tree or not; the test fails if there was none.
  [[nodiscard]] du::SmartPtr<memkernel::Instance> operator[](const std::string& name) const;
  /// Adds a last child of a new name or of a known product.
  du::SmartPtr<memkernel::Instance> Add(const std::string& parent, const std::string& name);
  /// The same in front of a sibling.
  du::SmartPtr<memkernel::Instance> InsertBefore(const std::string& sibling, const std::string& name);
  [[nodiscard]] const std::map<std::string, du::SmartPtr<memkernel::Instance>>& GetInstances() const noexcept
  {
    return m_instances;
  }

private:
  [[nodiscard]] du::SmartPtr<memkernel::Product> _GetProduct(const std::string& name);

  du::SmartPtr<memkernel::Tree> m_tree;
  std::map<std::string, du::SmartPtr<memkernel::Product>> m_products;
  std::map<std::string, du::SmartPtr<memkernel::Instance>> m_instances;
};

}  // namespace testsupport
