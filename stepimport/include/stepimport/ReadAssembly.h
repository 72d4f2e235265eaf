#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "stepimport/Assembly.h"
#include "stepimport/ShapeStore.h"

namespace stepimport {

class Progress;

/// What came of reading a file.
struct ReadResult {
  bool ok = false;
  /// `progress` has asked to stop; `ok` is false then.
  bool cancelled = false;
  /// When not `ok`: the file and the cause, "pump.stp: is empty". Empty otherwise.
  std::string error;
  /// What is not as it should be although the file could be read, each as "file: what": references that failed,
  /// occurrences that name no product.
  std::vector<std::string> warnings;
  /// Without any product when not `ok`.
  Assembly assembly;
  /// Null when not `ok`.
  std::shared_ptr<const ShapeStore> shapes;
};

/// Reads a STEP file (AP203, AP214, AP242) and every file that it refers to, and touches nothing else. `progress` may
/// be null. May be called from any thread; calls wait for each other, so `progress` must not read another file. Nothing
/// is thrown for a file that is missing, damaged or something else; only running out of memory outside of the reading
/// is.
[[nodiscard]] ReadResult ReadAssembly(const std::filesystem::path& file, Progress* progress);

}  // namespace stepimport
