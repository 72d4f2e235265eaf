#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "ShapeStoreBuilder.h"
#include "XdeDocument.h"
#include "stepimport/Assembly.h"

namespace stepimport {

class ReadProgress;

/// One file by itself. All indices are places in `products`; what the file refers to in other files is named, not read.
struct StepFile {
  std::vector<Product> products;
  /// One for each product.
  std::vector<ProductShape> shapes;
  /// The products that occur in no other one, in the order of the file. Never empty.
  std::vector<ProductIndex> roots;
  XdeDocument document;
  /// What is not as it should be although the file could be read, in words that follow a file name.
  std::vector<std::string> warnings;
};

/// Reads one file. Without a result, `cause` says what is wrong in words that follow a file name, or is empty when
/// `progress` was cancelled. Needs an `OcctScope` around it.
[[nodiscard]] std::optional<StepFile> ReadStepFile(const std::filesystem::path& file, ReadProgress& progress,
                                                   std::string& cause);

}  // namespace stepimport
