#include "stepimport/Import.h"

#include <utility>

#include "stepimport/Progress.h"
#include "stepimport/ReadAssembly.h"

namespace stepimport {

ImportResult Import(const std::filesystem::path& file, memkernel::Tree& tree,
                    const du::SmartPtr<memkernel::Instance>& parent, Progress* progress)
{
  ReadResult read = ReadAssembly(file, progress);
  ImportResult result;
  result.cancelled = read.cancelled;
  result.error = std::move(read.error);
  if (!read.ok) {
    return result;
  }
  if (CountInstances(read.assembly) > MaxInstances) {
    result.error = file.string() + ": unfolds to more than " + std::to_string(MaxInstances) + " instances";
    return result;
  }
  if (progress != nullptr && !progress->Report(100, "Filling the tree")) {
    result.cancelled = true;
    result.error = file.string() + ": cancelled";
    return result;
  }
  result.instance = FillTree(read.assembly, read.shapes, tree, parent);
  if (!result.instance) {
    result.error = file.string() + ": cannot be added to the tree as it is";
    return result;
  }
  result.ok = true;
  result.warnings = std::move(read.warnings);
  result.assembly = std::move(read.assembly);
  result.shapes = std::move(read.shapes);
  return result;
}

}  // namespace stepimport
