#include <csignal>
#include <exception>
#include <iostream>

#include "Options.h"
#include "Show.h"

int main(int argc, char** argv)
{
  // A reader that has seen enough, such as head, ends the program quietly, also where a parent has ignored the signal.
  std::signal(SIGPIPE, SIG_DFL);
  try {
    const ParsedOptions parsed = ParseOptions(argc, argv);
    return parsed.options ? Show(*parsed.options) : parsed.exitCode;
  } catch (const std::exception& error) {
    std::cerr << "guitree-show: " << error.what() << '\n';
    return ExitFailure;
  }
}
