#include "Terminal.h"

#include <langinfo.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <string_view>

namespace terminal {

namespace {

std::string_view ReadEnvironment(const char* name)
{
  const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): no other thread runs yet
  return value ? value : "";
}

}  // namespace

bool IsStdoutTerminal()
{
  return isatty(STDOUT_FILENO) == 1;
}

bool IsStderrTerminal()
{
  return isatty(STDERR_FILENO) == 1;
}

bool IsLocaleUtf8()
{
  std::setlocale(LC_CTYPE, "");                              // NOLINT(concurrency-mt-unsafe): no other thread runs yet
  return std::string_view(nl_langinfo(CODESET)) == "UTF-8";  // NOLINT(concurrency-mt-unsafe): as above
}

bool AllowsColor()
{
  return ReadEnvironment("NO_COLOR").empty() && ReadEnvironment("TERM") != "dumb";
}

}  // namespace terminal
