#include "Output.h"

#include <cerrno>
#include <cstring>
#include <iostream>

bool WriteOut(const std::string& text)
{
  errno = 0;
  std::cout.write(text.data(), static_cast<std::streamsize>(text.size())).flush();
  if (std::cout) {
    return true;
  }
  // NOLINTNEXTLINE(concurrency-mt-unsafe): the readers have ended, no other thread asks for an error text
  std::cerr << "guitree-show: cannot write: " << std::strerror(errno) << '\n';
  return false;
}
