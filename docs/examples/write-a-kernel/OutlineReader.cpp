#include "OutlineReader.h"

#include <istream>

#include "memkernel/Shape.h"

// begin read
bool OutlineReader::Read(std::istream& outline)
{
  const memkernel::TreeBatch batch(m_tree);
  bool isFine = true;
  for (std::string line; isFine && std::getline(outline, line);) {
    isFine = ReadLine(line);
  }
  if (!isFine && !m_path.empty()) {
    m_tree.Remove(m_path.front());
  }
  m_path.clear();
  return isFine;
}

bool OutlineReader::ReadLine(const std::string& line)
{
  const std::size_t indent = line.find_first_not_of(' ');
  if (indent == std::string::npos || indent % 2 != 0 || indent / 2 > m_path.size()) {
    return false;
  }
  const auto& product = GetProduct(line.substr(indent));
  m_path.resize(indent / 2);
  m_path.push_back(m_path.empty() ? m_tree.CreateRoot(product) : m_tree.AddChild(m_path.back(), product));
  return static_cast<bool>(m_path.back());
}
// end read

// begin product
const du::SmartPtr<memkernel::Product>& OutlineReader::GetProduct(const std::string& name)
{
  du::SmartPtr<memkernel::Product>& product = m_products[name];
  if (!product) {
    const auto load = [](memkernel::LoadContext& context) {
      return context.IsCanceled() ? zelk::ShapeDataNone : zelk::ShapeDataLoaded;
    };
    product = m_tree.CreateProduct(
        {.name = du::Symbol(std::string_view(name)), .shape = du::MakeSmart<memkernel::Shape>(load)});
  }
  return product;
}
// end product
