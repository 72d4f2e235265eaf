#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "guitree/GuiTree.h"
#include "testsupport/NamedTree.h"
#include "testsupport/PlainWorld.h"
#include "testsupport/RecordingHost.h"
#include "testsupport/ScriptedTreeState.h"

namespace testsupport {

/// A tree panel with everything around it: a recording host, a scripted state and a kernel tree. Nothing is initialised
/// and nothing recorded at the start.
class Panel {
public:
  /// `manager` goes to the constructor of the panel.
  explicit Panel(std::string_view treeText, const du::SmartPtr<dom::ManagedObject>& manager = nullptr);

  /// As a host does it, with a world of this tree; what was recorded on the way is forgotten.
  void Initialise();
  /// Makes the tree current without a population.
  void ShowTree() const { gui->SetBaseTree(kernel.Get()); }
  [[nodiscard]] du::SmartPtr<ScriptedSelectionController> UseSelController();
  /// The names of `GetNotFilteredSet`, sorted.
  [[nodiscard]] std::vector<std::string> GetShownNames() const;

  NamedTree kernel;
  RecordingHost host;
  du::SmartPtr<PlainWorld> world = du::MakeSmart<PlainWorld>();
  du::SmartPtr<guitree::GuiTree> gui;
  du::SmartPtr<ScriptedTreeState> state = du::MakeSmart<ScriptedTreeState>(*gui);
};

}  // namespace testsupport
