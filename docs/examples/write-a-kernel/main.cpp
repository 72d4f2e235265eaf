// Reads an outline into a world and prints what stands in its tree.

#include <iostream>
#include <sstream>

#include "OutlineReader.h"

namespace {

class Printer : public zelk::BaseInstanceVisitor {
public:
  bool VisitInstance(const du::SmartPtr<zelk::BaseInstance>& instance) override
  {
    du::SmartPtr<zelk::BaseInstance> parent;
    for (instance->GetBaseParent(parent); parent; parent->GetBaseParent(parent)) {
      std::cout << "  ";
    }
    std::cout << std::string(instance->GetObjectName()) << '\n';
    return true;
  }
};

}  // namespace

// begin main
int main()
{
  const auto world = du::MakeSmart<memkernel::World>();
  world->InstallForProcess();

  std::istringstream outline("bracket\n  plate\n    bolt\n    bolt\n  cover\n");
  OutlineReader reader(world->GetMemTree());
  const bool isFine = reader.Read(outline);

  Printer printer;
  world->tree->Visit(printer, zelk::BaseTree::VisitParentsFirst);
  unsigned int count = 0;
  world->tree->GetNumInstances(count);
  std::cout << count << " instances, " << reader.CountProducts() << " products\n";

  world->Shutdown();
  return isFine ? 0 : 1;
}
// end main
