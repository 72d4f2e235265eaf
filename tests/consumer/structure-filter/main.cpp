#include <cstdlib>

#include "zelremote/StructureFilterInfo.h"
#include "zelremote/TextPattern.h"

int main()
{
  zelremote::StructureFilterInfo filter("panel");
  filter.SetText("ÄRMEL");
  zelremote::FoldedText name;
  name.Assign("Linker ärmel", false);

  const bool isFound = zelremote::TextPattern(filter.GetText(), false, false).IsWordIn(0, name);

  return filter.IsFiltering(false) && isFound ? EXIT_SUCCESS : EXIT_FAILURE;
}
