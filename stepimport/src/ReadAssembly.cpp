#include "stepimport/ReadAssembly.h"

#include "AssemblyReader.h"
#include "OcctScope.h"
#include "ReadProgress.h"
#include "stepimport/Progress.h"

namespace stepimport {

ReadResult ReadAssembly(const std::filesystem::path& file, Progress* progress)
{
  const OcctScope scope;
  ReadProgress readProgress(progress);
  AssemblyReader reader(readProgress);
  ReadResult result;
  std::string cause;
  result.ok = reader.Read(file, cause);
  result.cancelled = readProgress.IsCancelled();
  if (!result.ok) {
    result.error = file.string() + ": " + (result.cancelled ? "cancelled" : cause);
    return result;
  }
  result.assembly = reader.TakeAssembly();
  result.shapes = reader.TakeShapes();
  result.warnings = reader.TakeWarnings();
  return result;
}

}  // namespace stepimport
