#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "FileFinder.h"
#include "ShapeStoreBuilder.h"
#include "stepimport/Assembly.h"

namespace stepimport {

class ReadProgress;
struct StepFile;

/// Reads a file and every file that it refers to, each once, into one `Assembly`. Lives for one import and needs an
/// `OcctScope` around it.
class AssemblyReader {
public:
  explicit AssemblyReader(ReadProgress& progress) : m_progress(progress) {}

  /// Answers false when `file` itself cannot be read, with `cause` as in `ReadStepFile`, or when the import was
  /// cancelled. A file that others refer to and that cannot be read is told by a failed reference and a warning.
  [[nodiscard]] bool Read(const std::filesystem::path& file, std::string& cause);

  /// To be called once, after `Read` has succeeded.
  [[nodiscard]] Assembly TakeAssembly() { return std::move(m_assembly); }
  [[nodiscard]] std::shared_ptr<const ShapeStore> TakeShapes() { return m_shapes.Take(); }
  [[nodiscard]] std::vector<std::string> TakeWarnings() { return std::move(m_warnings); }

private:
  struct KnownFile {
    std::filesystem::path path;
    std::vector<ProductIndex> roots;
    /// Why it cannot be read; empty when it could.
    std::string cause;
  };

  /// A product that stands for another file.
  struct Link {
    ProductIndex product;
    std::size_t file;
  };

  [[nodiscard]] std::size_t _GetFile(const std::filesystem::path& path);
  [[nodiscard]] bool _ReadFile(std::size_t number);
  void _AddProducts(std::size_t number, StepFile content);
  void _FindReference(ProductIndex index);
  void _ResolveLinks();
  void _Resolve(const Link& link);
  void _Expand(ProductIndex index, const std::vector<ProductIndex>& roots);
  void _BreakCycles();
  void _Fail(ProductIndex index, const std::string& cause);
  [[nodiscard]] ProductIndex _MakeRoot();
  void _WarnOfFailedReferences();

  ReadProgress& m_progress;
  FileFinder m_finder;
  std::vector<KnownFile> m_files;
  std::map<std::filesystem::path, std::size_t> m_fileNumbers;
  std::vector<Link> m_links;
  Assembly m_assembly;
  ShapeStoreBuilder m_shapes;
  std::vector<std::string> m_warnings;
};

}  // namespace stepimport
