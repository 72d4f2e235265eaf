#pragma once

#include <StepBasic_ProductDefinition.hxx>
#include <StepData_StepModel.hxx>
#include <XSControl_WorkSession.hxx>

#include <cstddef>
#include <string>
#include <vector>

#include "stepimport/Assembly.h"

namespace stepimport {

/// The products of one file and how they contain each other, as its entities tell it.
struct FileStructure {
  std::vector<Product> products;
  /// One for each product.
  std::vector<Handle(StepBasic_ProductDefinition)> definitions;
  /// Occurrences that were left out, since they name no product.
  std::size_t brokenOccurrences = 0;
};

/// Reads names, occurrences and references to other files from the entities themselves, in the order of the file. The
/// document that is filled later would give the structure too, but loses names that are not ASCII, mixes up occurrences
/// that lie in the same place, and takes a time that grows with the square of the number of occurrences.
[[nodiscard]] FileStructure ReadStructure(const Handle(XSControl_WorkSession) & session);

/// Takes the products apart, so that each is transferred by itself and none opens another file. To be called after
/// `ReadStructure` and before the transfer.
void DetachProducts(const Handle(XSControl_WorkSession) & session);

}  // namespace stepimport
