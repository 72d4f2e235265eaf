#pragma once

#include <map>
#include <string>
#include <vector>

#include "memkernel/World.h"

// begin class
// Fills a tree from an outline: one line an instance, two spaces a level, the name of the product on each line.
class OutlineReader {
public:
  explicit OutlineReader(memkernel::Tree& tree) : m_tree(tree) {}

  // False, and nothing left in the tree, if the outline is none.
  bool Read(std::istream& outline);
  [[nodiscard]] std::size_t CountProducts() const { return m_products.size(); }

private:
  bool ReadLine(const std::string& line);
  [[nodiscard]] const du::SmartPtr<memkernel::Product>& GetProduct(const std::string& name);

  memkernel::Tree& m_tree;
  std::map<std::string, du::SmartPtr<memkernel::Product>> m_products;
  // The instance that was read last on each level, down to the present one.
  std::vector<du::SmartPtr<memkernel::Instance>> m_path;
};
// end class
