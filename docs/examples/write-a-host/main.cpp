// Shows a small assembly through the hosts of the guide, and checks the calls that they get.

#include <iostream>
#include <list>
#include <string>

#include "AssemblyState.h"
#include "FilteringHost.h"
#include "OutlineHost.h"
#include "SmallestHost.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeController.h"
#include "hostcheck/ProtocolChecker.h"
#include "memkernel/World.h"
#include "zelremote/StructureFilterInfo.h"

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
  gui->SetTreeState(du::MakeSmart<AssemblyState>(*gui));
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

// begin filter
void Filter(const memkernel::World& world, const guitree::GuiTree& gui, guitree::StructureTreeState& state,
            const std::string& text)
{
  state.GetStructureFilter()->SetText(text);
  state.PopulateTree(false);
  // An application just goes on: its event loop is the owner's.
  world.GetLoop().RunUntil([&gui] { return !gui.GetTreeController()->IsBusy(); });
}
// end filter

// begin gate
void RenameWhileFiltering(const memkernel::World& world, FilteringHost& host, guitree::StructureTreeState& state)
{
  memkernel::Tree& tree = world.GetMemTree();
  bool isFilterDue = false;
  tree.SetEditGate([&] { isFilterDue = host.CancelFilter(); });
  state.PopulateTree(false);
  tree.Rename(tree.GetRootInstance(), "bolted bracket");
  if (isFilterDue) {
    state.PopulateTree(true);
  }
  tree.SetEditGate({});
}
// end gate

// begin open
// The path leads from the topmost row to the one that the user opens.
bool Open(const FilteringHost& host, guitree::StructureTreeState& state, const std::list<zelk::BaseInstance*>& path)
{
  return host.CanOpen(path.back()) && state.ExpandFilterNode(path);
}
// end open

// Answers whether a result that nobody has cancelled has nothing to open.
bool ShowFiltered(const du::SmartPtr<memkernel::World>& world)
{
  FilteringHost host;
  const auto gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  const auto state = du::MakeSmart<AssemblyState>(*gui);
  gui->SetGuiInterface(&host);
  gui->SetTreeState(state);
  state->GetStructureFilter()->SetText("other");
  gui->Initialise(world);
  Filter(*world, *gui, *state, "bolt");
  RenameWhileFiltering(*world, host, *state);
  Filter(*world, *gui, *state, "bolted");
  const bool isFilled = !Open(host, *state, {world->GetMemTree().GetRootInstance().Get()});
  gui->Close();
  return isFilled;
}

}  // namespace

int main()
{
  const auto world = du::MakeSmart<memkernel::World>();
  world->InstallForProcess();
  FillTree(world->GetMemTree());

  SmallestHost smallest;
  OutlineHost outline;
  const bool isFine = ShowAndCheck(world, smallest) && ShowAndCheck(world, outline) && ShowFiltered(world);

  world->Shutdown();
  return isFine ? 0 : 1;
}
