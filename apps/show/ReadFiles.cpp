#include "ReadFiles.h"

#include <iostream>

#include "ReadingLine.h"
#include "Terminal.h"
#include "stepimport/Import.h"
#include "texthost/PrintableText.h"

namespace {

void Report(const std::string& text)
{
  std::cerr << "guitree-show: " << texthost::MakePrintable(text) << '\n';
}

du::SmartPtr<memkernel::Instance> CreateCommonRoot(memkernel::Tree& tree)
{
  return tree.CreateRoot(tree.CreateProduct({.name = "files"}));
}

// The line is gone when this returns, so that no message is mixed up with it.
stepimport::ImportResult ReadFile(const std::filesystem::path& file, memkernel::Tree& tree,
                                  const du::SmartPtr<memkernel::Instance>& parent)
{
  ReadingLine progress(terminal::IsStderrTerminal());
  return stepimport::Import(file, tree, parent, &progress);
}

}  // namespace

ReadSummary ReadFiles(const std::vector<std::filesystem::path>& files, const memkernel::World& world)
{
  memkernel::Tree& tree = world.GetMemTree();
  const auto parent = files.size() > 1 ? CreateCommonRoot(tree) : nullptr;
  ReadSummary summary;
  for (const std::filesystem::path& file : files) {
    const stepimport::ImportResult result = ReadFile(file, tree, parent);
    if (result.cancelled) {
      summary.interrupted = true;
      return summary;
    }
    for (const std::string& warning : result.warnings) {
      Report("warning: " + warning);
    }
    if (result.ok) {
      ++summary.files;
    } else {
      Report(result.error);
    }
  }
  return summary;
}
