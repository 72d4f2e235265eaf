#include <QApplication>
#include <exception>
#include <iostream>

#include "MainWindow.h"
#include "Options.h"

namespace {

// The 3D view is an X window; where Wayland is there as well, an X server for such windows nearly always is.
void PreferX()
{
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && qEnvironmentVariableIsSet("DISPLAY")) {
    qputenv("QT_QPA_PLATFORM", "xcb");
  }
}

int Run(const viewer::Options& options, int argc, char** argv)
{
  PreferX();
  const QApplication application(argc, argv);
  QApplication::setOrganizationName("guitree");
  QApplication::setApplicationName("guitree-viewer");
  QApplication::setApplicationVersion(GUITREE_VERSION);
  viewer::MainWindow window;
  window.show();
  window.Open(options.files);
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv)
{
  try {
    const viewer::ParsedOptions parsed = viewer::ParseOptions(argc, argv);
    return parsed.options ? Run(*parsed.options, argc, argv) : parsed.exitCode;
  } catch (const std::exception& error) {
    std::cerr << "guitree-viewer: " << error.what() << '\n';
    return 1;
  }
}
