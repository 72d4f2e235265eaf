#include "Event.h"

#include <algorithm>
#include <sstream>

namespace systemtest {
namespace {

struct KindInfo {
  EventKind kind;
  const char* name;
  unsigned int weight;
};

constexpr std::array s_kinds{
    KindInfo{EventKind::AddPart, "AddPart", 30},
    KindInfo{EventKind::AddAssembly, "AddAssembly", 16},
    KindInfo{EventKind::AddProxy, "AddProxy", 4},
    KindInfo{EventKind::AddBody, "AddBody", 8},
    KindInfo{EventKind::AddSymbol, "AddSymbol", 3},
    KindInfo{EventKind::AddMany, "AddMany", 1},
    KindInfo{EventKind::Remove, "Remove", 8},
    KindInfo{EventKind::Rename, "Rename", 10},
    KindInfo{EventKind::RenameProduct, "RenameProduct", 2},
    KindInfo{EventKind::ColumnsChanged, "ColumnsChanged", 1},
    KindInfo{EventKind::ExpandProxy, "ExpandProxy", 4},
    KindInfo{EventKind::CollapseProxy, "CollapseProxy", 2},
    KindInfo{EventKind::FailProxy, "FailProxy", 2},
    KindInfo{EventKind::SettleProxy, "SettleProxy", 1},
    KindInfo{EventKind::BeginBatch, "BeginBatch", 5},
    KindInfo{EventKind::EndBatch, "EndBatch", 5},
    KindInfo{EventKind::AddScene, "AddScene", 3},
    KindInfo{EventKind::RemoveScene, "RemoveScene", 1},
    KindInfo{EventKind::ActivateView, "ActivateView", 8},
    KindInfo{EventKind::NoView, "NoView", 1},
    KindInfo{EventKind::RemoveView, "RemoveView", 1},
    KindInfo{EventKind::CreateShape, "CreateShape", 10},
    KindInfo{EventKind::RemoveShape, "RemoveShape", 5},
    KindInfo{EventKind::Hide, "Hide", 14},
    KindInfo{EventKind::Show, "Show", 8},
    KindInfo{EventKind::Thumbnail, "Thumbnail", 4},
    KindInfo{EventKind::Reject, "Reject", 2},
    KindInfo{EventKind::SetStatus, "SetStatus", 3},
    KindInfo{EventKind::Compare, "Compare", 8},
    KindInfo{EventKind::EndLoad, "EndLoad", 20},
    KindInfo{EventKind::Select, "Select", 12},
    KindInfo{EventKind::Deselect, "Deselect", 6},
    KindInfo{EventKind::DeselectAll, "DeselectAll", 2},
    KindInfo{EventKind::Highlight, "Highlight", 10},
    KindInfo{EventKind::Unhighlight, "Unhighlight", 5},
    KindInfo{EventKind::UnhighlightAll, "UnhighlightAll", 2},
    KindInfo{EventKind::Filter, "Filter", 12},
    KindInfo{EventKind::FilterOff, "FilterOff", 5},
    KindInfo{EventKind::Bodies, "Bodies", 3},
    KindInfo{EventKind::Collapse, "Collapse", 3},
    KindInfo{EventKind::Results, "Results", 3},
    KindInfo{EventKind::HidePanel, "HidePanel", 4},
    KindInfo{EventKind::ShowPanel, "ShowPanel", 14},
    KindInfo{EventKind::PropsLoaded, "PropsLoaded", 2},
    KindInfo{EventKind::RefuseNames, "RefuseNames", 2},
    KindInfo{EventKind::StepJob, "StepJob", 12},
    KindInfo{EventKind::CancelJob, "CancelJob", 2},
    KindInfo{EventKind::CancelWorkingJob, "CancelWorkingJob", 4},
    KindInfo{EventKind::OpenBranch, "OpenBranch", 5},
    KindInfo{EventKind::Settle, "Settle", 90},
};

}  // namespace

std::string ToText(const Event& event)
{
  const auto* const info =
      std::find_if(s_kinds.begin(), s_kinds.end(), [&](const KindInfo& kind) { return kind.kind == event.kind; });
  return std::string(info->name) + ' ' + std::to_string(event.first) + ' ' + std::to_string(event.second);
}

std::optional<Event> ParseEvent(std::string_view text)
{
  std::istringstream words{std::string(text)};
  std::string name;
  Event event;
  words >> name >> event.first >> event.second;
  const auto* const info =
      std::find_if(s_kinds.begin(), s_kinds.end(), [&](const KindInfo& kind) { return kind.name == name; });
  if (!words || info == s_kinds.end()) {
    return std::nullopt;
  }
  event.kind = info->kind;
  return event;
}

Events MakeEvents(std::uint64_t seed, std::size_t count)
{
  // No distributions: what they draw differs between libraries.
  std::mt19937_64 random(seed);
  std::uint64_t total = 0;
  for (const KindInfo& kind : s_kinds) {
    total += kind.weight;
  }
  Events events;
  while (events.size() < count) {
    std::uint64_t drawn = random() % total;
    const auto* kind = s_kinds.begin();
    while (drawn >= kind->weight) {
      drawn -= kind->weight;
      ++kind;
    }
    const std::uint64_t numbers = random();
    events.push_back(
        {kind->kind, static_cast<std::uint32_t>(numbers >> 32U), static_cast<std::uint32_t>(numbers & 0xffffffffU)});
  }
  return events;
}

}  // namespace systemtest
