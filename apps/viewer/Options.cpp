#include "Options.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

namespace viewer {

namespace {

constexpr int s_usageError = 2;

}  // namespace

ParsedOptions ParseOptions(int argc, char** argv)
{
  std::vector<std::string> files;
  CLI::App app("Shows STEP assemblies (AP203, AP214, AP242) in 3D, with their structure beside them.",
               "guitree-viewer");
  app.set_version_flag("--version", std::string("guitree-viewer ") + GUITREE_VERSION);
  app.add_option("FILE", files, "STEP files to open")->type_name("");
  app.footer(
      "Several files are shown together. A file that cannot be read is named in the window.\n"
      "The 3D view needs an X display with OpenGL.");
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& success) {
    app.exit(success);
    return {};
  } catch (const CLI::ParseError& error) {
    std::cerr << "guitree-viewer: " << error.what() << "\nTry 'guitree-viewer --help'.\n";
    return {std::nullopt, s_usageError};
  }
  Options options;
  for (const std::string& file : files) {
    options.files += QString::fromLocal8Bit(file.c_str());
  }
  return {std::move(options), 0};
}

}  // namespace viewer
