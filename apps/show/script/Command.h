#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "FilterSettings.h"
#include "script/Path.h"

namespace script {

/// What a command does; `GetForms` tells how each is written.
enum class Verb {
  Select,
  Deselect,
  Highlight,
  Unhighlight,
  Hide,
  Show,
  ThumbnailOn,
  ThumbnailOff,
  Rename,
  AddPart,
  AddAssembly,
  AddProxy,
  Remove,
  ExpandProxy,
  CollapseProxy,
  FailProxy,
  SettleProxy,
  ActivateView,
  ActivateNoView,
  RemoveView,
  SetViewType,
  AddScene,
  RemoveScene,
  HidePanel,
  ShowPanel,
  ShowBodies,
  LeaveBodiesOut,
  Collapse,
  Uncollapse,
  Filter,
  FilterOff,
  Sort,
  SortOff,
  SetResults,
  ResultsOff,
  Expand,
  HoldFilter,
  ResumeFilter,
  CancelFilter,
  BeginBatch,
  EndBatch,
  Print,
};

/// One line of a script.
struct Command {
  Verb verb = Verb::Print;
  /// How often it is done, one after the other.
  std::size_t times = 1;
  /// The scene that it is about; 0 for that of the current view.
  std::size_t scene = 0;
  std::vector<Path> paths{};
  /// The new name of `Rename`, the type of `SetViewType`.
  std::string name{};
  /// The view or scene that is named by number.
  std::size_t number = 0;
  /// What `Filter` asks for; the sorting alone of `Sort`.
  FilterSettings filter{};

  friend bool operator==(const Command&, const Command&) = default;
};

}  // namespace script
