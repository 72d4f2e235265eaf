#include <cstdlib>
#include <string>

#include "du/Symbol.h"

int main()
{
  const du::Symbol name("wheel");
  return name == std::string("wheel") ? EXIT_SUCCESS : EXIT_FAILURE;
}
