#pragma once

#include <STEPCAFControl_Reader.hxx>
#include <TDocStd_Document.hxx>

#include <vector>

#include "ShapeStoreBuilder.h"
#include "StructureReader.h"

namespace stepimport {

/// Finds the geometry of each product in `document`, into which `reader` has transferred the file, one for each product
/// of `structure`, and completes the products by what belongs to it: colours, layers and bodies.
[[nodiscard]] std::vector<ProductShape> ReadShapes(STEPCAFControl_Reader& reader,
                                                   const Handle(TDocStd_Document) & document, FileStructure& structure);

}  // namespace stepimport
