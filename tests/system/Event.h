#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace systemtest {

enum class EventKind {
  AddPart,
  AddAssembly,
  AddProxy,
  AddBody,
  AddSymbol,
  AddMany,
  Remove,
  Rename,
  RenameProduct,
  ColumnsChanged,
  ExpandProxy,
  CollapseProxy,
  FailProxy,
  SettleProxy,
  BeginBatch,
  EndBatch,
  AddScene,
  RemoveScene,
  ActivateView,
  NoView,
  RemoveView,
  CreateShape,
  RemoveShape,
  Hide,
  Show,
  Thumbnail,
  Reject,
  SetStatus,
  Compare,
  EndLoad,
  Select,
  Deselect,
  DeselectAll,
  Highlight,
  Unhighlight,
  UnhighlightAll,
  Filter,
  FilterOff,
  Bodies,
  Collapse,
  Results,
  HidePanel,
  ShowPanel,
  PropsLoaded,
  RefuseNames,
  StepJob,
  CancelJob,
  CancelWorkingJob,
  OpenBranch,
  Settle,
};

/// Something that happens to a panel. A plain value: the two numbers say what it happens to, by their remainders, so
/// any event can be played at any time, and what has no target is nothing.
struct Event {
  EventKind kind = EventKind::Settle;
  std::uint32_t first = 0;
  std::uint32_t second = 0;

  friend bool operator==(const Event&, const Event&) = default;
};

using Events = std::vector<Event>;

/// "AddPart 17 3".
[[nodiscard]] std::string ToText(const Event& event);
/// Nothing for a text that no event has.
[[nodiscard]] std::optional<Event> ParseEvent(std::string_view text);
/// The same for the same seed, on every machine.
[[nodiscard]] Events MakeEvents(std::uint64_t seed, std::size_t count);

}  // namespace systemtest
