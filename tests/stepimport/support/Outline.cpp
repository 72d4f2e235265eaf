#include "support/Outline.h"

#include <cstddef>

namespace stepimporttest {

namespace {

std::string Describe(const stepimport::Appearance& appearance)
{
  std::string text = appearance.color.empty() ? "" : ' ' + appearance.color;
  for (const std::string& layer : appearance.layers) {
    text += " on " + layer;
  }
  return text;
}

std::string Describe(const stepimport::FileReference& reference)
{
  switch (reference.state) {
    case stepimport::ReferenceState::None:
      return "";
    case stepimport::ReferenceState::Expanded:
      return " from " + reference.target;
    case stepimport::ReferenceState::Failed:
      return " failed " + reference.target;
  }
  return "";
}

void Append(const stepimport::Assembly& assembly, const stepimport::Occurrence& occurrence, std::size_t level,
            std::string& text)
{
  const stepimport::Product& product = assembly.products.at(occurrence.product);
  text += std::string(2 * level, ' ') + occurrence.name + " [" + product.name + ']' + Describe(product.appearance)
          + Describe(product.reference) + '\n';
  for (const stepimport::Body& body : product.bodies) {
    text += std::string(2 * level + 2, ' ') + "* " + body.name + Describe(body.appearance) + '\n';
  }
  for (const stepimport::Occurrence& child : product.occurrences) {
    Append(assembly, child, level + 1, text);
  }
}

}  // namespace

std::string MakeOutline(const stepimport::Assembly& assembly)
{
  std::string text;
  if (!assembly.products.empty()) {
    Append(assembly, {assembly.products.at(assembly.root).name, assembly.root}, 0, text);
  }
  return text;
}

}  // namespace stepimporttest
