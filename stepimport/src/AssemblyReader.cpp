#include "AssemblyReader.h"

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>

#include "ProductGraph.h"
#include "ReadProgress.h"
#include "StepFile.h"
#include "Utf8.h"

namespace stepimport {

namespace {

/// One key for one file, whichever way leads to it.
std::filesystem::path MakeKey(const std::filesystem::path& path)
{
  std::error_code error;
  const std::filesystem::path canonical = std::filesystem::canonical(path, error);
  return error ? path.lexically_normal() : canonical;
}

std::vector<Occurrence> MakeOccurrences(const std::vector<Product>& products, const std::vector<ProductIndex>& indices)
{
  std::vector<Occurrence> occurrences;
  occurrences.reserve(indices.size());
  for (const ProductIndex index : indices) {
    occurrences.push_back({products[index].name, index});
  }
  return occurrences;
}

}  // namespace

bool AssemblyReader::Read(const std::filesystem::path& file, std::string& cause)
{
  static_cast<void>(_GetFile(file));
  for (std::size_t number = 0; number < m_files.size(); ++number) {
    m_progress.BeginFile(m_files[number].path, number, m_files.size());
    const bool isRead = _ReadFile(number);
    if (m_progress.IsCancelled()) {
      return false;
    }
    if (number == 0 && !isRead) {
      cause = m_files.front().cause;
      return false;
    }
  }
  _ResolveLinks();
  m_assembly.root = _MakeRoot();
  _WarnOfFailedReferences();
  return true;
}

std::size_t AssemblyReader::_GetFile(const std::filesystem::path& path)
{
  const auto [place, isNew] = m_fileNumbers.try_emplace(MakeKey(path), m_files.size());
  if (isNew) {
    m_files.push_back({path, {}, {}});
  }
  return place->second;
}

bool AssemblyReader::_ReadFile(std::size_t number)
{
  std::string cause;
  std::optional<StepFile> content = ReadStepFile(m_files[number].path, m_progress, cause);
  if (!content) {
    m_files[number].cause = cause;
    return false;
  }
  _AddProducts(number, std::move(*content));
  return true;
}

void AssemblyReader::_AddProducts(std::size_t number, StepFile content)
{
  const ProductIndex first = m_assembly.products.size();
  for (const std::string& warning : content.warnings) {
    m_warnings.push_back(m_files[number].path.string() + ": " + warning);
  }
  m_shapes.AddDocument(std::move(content.document));
  for (ProductIndex i = 0; i < content.products.size(); ++i) {
    Product& product = m_assembly.products.emplace_back(std::move(content.products[i]));
    product.sourceFile = m_files[number].path;
    for (Occurrence& occurrence : product.occurrences) {
      occurrence.product += first;
    }
    m_shapes.Set(first + i, std::move(content.shapes[i]));
    _FindReference(first + i);
  }
  std::vector<ProductIndex>& roots = m_files[number].roots;
  std::transform(content.roots.begin(), content.roots.end(), std::back_inserter(roots),
                 [first](ProductIndex root) { return first + root; });
}

void AssemblyReader::_FindReference(ProductIndex index)
{
  Product& product = m_assembly.products[index];
  if (product.reference.state == ReferenceState::None) {
    return;
  }
  const std::optional<std::filesystem::path> found = m_finder.Find(product.sourceFile, product.reference.target);
  product.reference.target = MakeName(product.reference.target);
  if (found) {
    product.reference.file = *found;
    m_links.push_back({index, _GetFile(*found)});
  } else {
    _Fail(index, "does not exist");
  }
}

void AssemblyReader::_ResolveLinks()
{
  for (const Link& link : m_links) {
    _Resolve(link);
  }
  _BreakCycles();
}

void AssemblyReader::_Resolve(const Link& link)
{
  const KnownFile& file = m_files[link.file];
  if (!file.cause.empty()) {
    _Fail(link.product, file.cause);
    return;
  }
  Product& product = m_assembly.products[link.product];
  product.reference.state = ReferenceState::Expanded;
  product.reference.cause.clear();
  _Expand(link.product, file.roots);
}

void AssemblyReader::_Expand(ProductIndex index, const std::vector<ProductIndex>& roots)
{
  Product& product = m_assembly.products[index];
  const Product& root = m_assembly.products[roots.front()];
  if (roots.size() > 1 || root.reference.state != ReferenceState::None) {
    product.occurrences = MakeOccurrences(m_assembly.products, roots);
    return;
  }
  product.occurrences = root.occurrences;
  product.bodies = root.bodies;
  product.appearance = root.appearance;
  product.hasShape = root.hasShape;
  product.hasDamagedShape = root.hasDamagedShape;
  m_shapes.Share(index, roots.front());
}

void AssemblyReader::_BreakCycles()
{
  while (true) {
    const std::vector<ProductIndex> cycle = FindCycle(m_assembly.products);
    const auto last = std::find_if(cycle.rbegin(), cycle.rend(), [this](ProductIndex index) {
      return m_assembly.products[index].reference.state == ReferenceState::Expanded;
    });
    // A file by itself holds no cycle, so each cycle leads through a reference.
    if (last == cycle.rend()) {
      return;
    }
    _Fail(*last, "contains the file that refers to it");
  }
}

void AssemblyReader::_Fail(ProductIndex index, const std::string& cause)
{
  Product& product = m_assembly.products[index];
  product.reference.state = ReferenceState::Failed;
  product.reference.cause = cause;
  product.occurrences.clear();
  product.bodies.clear();
  product.hasShape = false;
  product.hasDamagedShape = false;
  m_shapes.Set(index, {});
}

ProductIndex AssemblyReader::_MakeRoot()
{
  const KnownFile& file = m_files.front();
  if (file.roots.size() == 1) {
    return file.roots.front();
  }
  Product root;
  root.name = MakeName(file.path.stem().string());
  root.sourceFile = file.path;
  root.occurrences = MakeOccurrences(m_assembly.products, file.roots);
  m_assembly.products.push_back(std::move(root));
  return m_assembly.products.size() - 1;
}

void AssemblyReader::_WarnOfFailedReferences()
{
  for (const Product& product : m_assembly.products) {
    if (product.reference.state == ReferenceState::Failed) {
      m_warnings.push_back(product.sourceFile.string() + ": '" + product.reference.target + "', referred to by '"
                           + product.name + "', " + product.reference.cause);
    }
  }
}

}  // namespace stepimport
