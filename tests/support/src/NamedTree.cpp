#include "testsupport/NamedTree.h"

#include <stdexcept>
#include <vector>

namespace testsupport {

NamedTree::NamedTree(std::string_view text, const du::SmartPtr<memkernel::Tree>& tree) : m_tree(tree)
{
  std::vector<du::SmartPtr<memkernel::Instance>> parents;
  du::SmartPtr<memkernel::Instance> last;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("[] "), text.size());
    if (end > 0) {
      const std::string name(text.substr(0, end));
      const auto product = _GetProduct(name);
      last = parents.empty() ? m_tree->CreateRoot(product) : m_tree->AddChild(parents.back(), product);
      m_instances.emplace(name, last);
      text.remove_prefix(end);
      continue;
    }
    if (text.front() == '[') {
      parents.push_back(last);
    } else if (text.front() == ']') {
      parents.pop_back();
    }
    text.remove_prefix(1);
  }
}

du::SmartPtr<memkernel::Instance> NamedTree::operator[](const std::string& name) const
{
  const auto entry = m_instances.find(name);
  if (entry == m_instances.end()) {
    throw std::out_of_range("no instance is named " + name);
  }
  return entry->second;
}

du::SmartPtr<memkernel::Instance> NamedTree::Add(const std::string& parent, const std::string& name)
{
  auto instance = m_tree->AddChild((*this)[parent], _GetProduct(name));
  m_instances.emplace(name, instance);
  return instance;
}

du::SmartPtr<memkernel::Instance> NamedTree::InsertBefore(const std::string& sibling, const std::string& name)
{
  auto instance = m_tree->InsertBefore((*this)[sibling], _GetProduct(name));
  m_instances.emplace(name, instance);
  return instance;
}

du::SmartPtr<memkernel::Product> NamedTree::_GetProduct(const std::string& name)
{
  du::SmartPtr<memkernel::Product>& product = m_products[name];
  if (!product) {
    product = m_tree->CreateProduct({.name = du::Symbol(std::string_view(name))});
  }
  return product;
}

}  // namespace testsupport
