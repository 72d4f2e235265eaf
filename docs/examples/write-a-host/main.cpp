// Shows a small assembly through the hosts of the guide, and checks the calls that they get.

#include <iostream>

#include "OutlineHost.h"
#include "PlainTreeState.h"
#include "SmallestHost.h"
#include "guitree/GuiTree.h"
#include "hostcheck/ProtocolChecker.h"
#include "memkernel/World.h"

namespace {

void FillTree(memkernel::Tree& tree)
{
  const memkernel::TreeBatch batch(tree);
  const auto bolt = tree.CreateProduct({.name = "bolt"});
  const auto plate = tree.CreateProduct({.name = "plate"});
  const auto root = tree.CreateRoot(tree.CreateProduct({.name = "bracket"}));
  const auto side = tree.AddChild(root, plate);
  tree.AddChild(side, bolt);
  tree.AddChild(side, bolt, "second bolt");
  tree.AddChild(root, plate, "other plate");
}

// begin panel
void ShowPanel(const du::SmartPtr<memkernel::World>& world, guitree::GuiInterface& host)
{
  const auto gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  gui->SetGuiInterface(&host);
  gui->SetTreeState(du::MakeSmart<PlainTreeState>(*gui));
  gui->Initialise(world);
  gui->Close();
}
// end panel

// begin check
bool ShowAndCheck(const du::SmartPtr<memkernel::World>& world, guitree::GuiInterface& host)
{
  hostcheck::ProtocolChecker checker(&host);
  ShowPanel(world, checker);
  checker.CheckAtRest();
  for (const std::string& violation : checker.GetViolations()) {
    std::cerr << violation << '\n';
  }
  return checker.GetViolations().empty();
}
// end check

}  // namespace

int main()
{
  const auto world = du::MakeSmart<memkernel::World>();
  world->InstallForProcess();
  FillTree(world->GetMemTree());

  SmallestHost smallest;
  OutlineHost outline;
  const bool isFine = ShowAndCheck(world, smallest) && ShowAndCheck(world, outline);

  world->Shutdown();
  return isFine ? 0 : 1;
}
