#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "guitree/GuiTree.h"
#include "testsupport/NamedTree.h"
#include "testsupport/PlainWorld.h"
#include "testsupport/RecordingHost.h"
#include "testsupport/ScriptedWorldTreeState.h"

namespace testsupport {

/// A panel that shows the tree of the process's world, with a recording host: `Panel` with a `ScriptedWorldTreeState`.
/// The world is installed for as long as the panel lives. Nothing is initialised and nothing recorded at the start.
class WorldPanel {
public:
  explicit WorldPanel(std::string_view treeText, const du::SmartPtr<dom::ManagedObject>& manager = nullptr);
  WorldPanel(const WorldPanel&) = delete;
  WorldPanel& operator=(const WorldPanel&) = delete;
  ~WorldPanel();

  /// As a host does it; what was recorded on the way is forgotten.
  void Initialise();
  /// The names of `GetNotFilteredSet`, sorted.
  [[nodiscard]] std::vector<std::string> GetShownNames() const;
  [[nodiscard]] memkernel::Tree& GetTree() const { return *kernel.Get(); }

  NamedTree kernel;
  RecordingHost host;
  du::SmartPtr<PlainWorld> world = du::MakeSmart<PlainWorld>();
  du::SmartPtr<guitree::GuiTree> gui;
  du::SmartPtr<ScriptedWorldTreeState> state;
  /// The one that the state made last.
  du::SmartPtr<guitree::WorldTreeStateTreeObserver> observer;
};

}  // namespace testsupport
