#include "Output.h"

#include <cerrno>
#include <iostream>

#include "ErrnoText.h"

bool WriteOut(const std::string& text)
{
  errno = 0;
  std::cout.write(text.data(), static_cast<std::streamsize>(text.size())).flush();
  if (std::cout) {
    return true;
  }
  std::cerr << "guitree-show: cannot write: " << GetErrnoText() << '\n';
  return false;
}
