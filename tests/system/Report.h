#pragma once

#include <cstdint>
#include <string>

#include "Shrink.h"
#include "Stage.h"

namespace systemtest {

struct Outcome {
  std::string fault;
  std::vector<std::string> script;
  std::size_t checks = 0;
  std::size_t mostRows = 0;
  Stage::Situations situations;
};

/// A panel of its own for each call; looked at once more at the end.
inline Outcome Play(const Events& events, const Stage::Options& options)
{
  Stage stage(options);
  for (const Event& event : events) {
    stage.Play(event);
  }
  stage.Play({});
  return {stage.GetFault(), stage.GetScript(), stage.GetChecks(), stage.GetMostRows(), stage.GetSituations()};
}

/// What somebody needs to see the fault again: the seed, the fault that the shortest run ends with, that run as events,
/// and as a script.
inline std::string Report(std::uint64_t seed, const Events& events, const Stage::Options& options)
{
  const Events shortest =
      Shrink(events, [&options](const Events& shorter) { return !Play(shorter, options).fault.empty(); });
  const Outcome outcome = Play(shortest, options);
  std::string text = "seed " + std::to_string(seed) + ", " + std::to_string(events.size())
                     + " events (GUITREE_SYSTEM_SEED and GUITREE_SYSTEM_STEPS play them again)\n" + outcome.fault
                     + "\nafter\n";
  for (const Event& event : shortest) {
    text += ToText(event) + '\n';
  }
  text += "as a script of guitree-show:\n";
  for (const std::string& line : outcome.script) {
    text += line + '\n';
  }
  return text;
}

}  // namespace systemtest
