#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "du/SmartPtr.h"
#include "memkernel/Instance.h"
#include "memkernel/Tree.h"
#include "stepimport/Assembly.h"
#include "stepimport/ShapeStore.h"

namespace stepimport {

class Progress;

/// What came of an import.
struct ImportResult {
  bool ok = false;
  /// `progress` has asked to stop; `ok` is false then.
  bool cancelled = false;
  /// When not `ok`: the file and the cause, as in `ReadResult`.
  std::string error;
  /// As in `ReadResult`.
  std::vector<std::string> warnings;
  /// The instance that stands for the file; null when not `ok`.
  du::SmartPtr<memkernel::Instance> instance;
  /// What the tree was filled from, and the geometry of its products. Null when not `ok`.
  Assembly assembly;
  std::shared_ptr<const ShapeStore> shapes;
};

/// No tree is filled with more instances than these: a few lines of a file can unfold to any number of them.
inline constexpr std::size_t MaxInstances = 20'000'000;

/// Reads `file` as `ReadAssembly` does and adds it to `tree` as the last child of `parent`, or, for a null `parent`, as
/// the root of the empty tree. Whoever shows several files calls it for each of them with the same parent. Nothing is
/// added unless everything was read and nobody has asked to stop. Runs on the thread that edits the tree, which must
/// not be telling its observers of another edit when the filling begins.
///
/// The geometry is there afterwards, its triangles are not: each shape in the tree starts without data, and makes them
/// when the kernel's loader is asked for it. A shape of which the file makes no sense has failed from the start.
[[nodiscard]] ImportResult Import(const std::filesystem::path& file, memkernel::Tree& tree,
                                  const du::SmartPtr<memkernel::Instance>& parent, Progress* progress);

/// The second half of `Import`, for an assembly that was read on another thread: one batch, parents first, bodies
/// before occurrences. Null when the tree refuses, or when the assembly has no product or more than `MaxInstances`
/// instances; the tree is then as before. `shapes` is the store that was read with the assembly: the shapes in the tree
/// hold it and load from it. Where it is null they fail as soon as they are asked for.
[[nodiscard]] du::SmartPtr<memkernel::Instance> FillTree(const Assembly& assembly,
                                                         const std::shared_ptr<const ShapeStore>& shapes,
                                                         memkernel::Tree& tree,
                                                         const du::SmartPtr<memkernel::Instance>& parent);

}  // namespace stepimport
