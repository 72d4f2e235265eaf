#include <cstdlib>

#include "guitree/StructureTreeState.h"
#include "guitree/TypeIcon.h"
#include "zelremote/StructureFilterInfo.h"
#include "zelremote/TextPattern.h"

int main()
{
  zelremote::StructureFilterInfo filter("panel");
  filter.SetText("ÄRMEL");
  zelremote::FoldedText name;
  name.Assign("Linker ärmel", false);

  const bool isFound = zelremote::TextPattern(filter.GetText(), false, false).IsWordIn(0, name);

  const bool isPlain = guitree::StructureTreeState::GetUnloadedTypeIconStatic({}, {}) == guitree::IconPlain;

  return filter.IsFiltering(false) && isFound && isPlain ? EXIT_SUCCESS : EXIT_FAILURE;
}
