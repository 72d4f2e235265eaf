#pragma once

#include <gtest/gtest.h>

#include <string>

#include "RecordingPanel.h"
#include "script/ScriptError.h"
#include "script/ScriptParser.h"
#include "script/ScriptPlayer.h"

/// A pump with a set of two bolts, a frame and an unexpanded gear, in one scene whose view is current.
class ScriptPlayerStage : public testing::Test {
protected:
  void SetUp() override
  {
    for (const char* line : {"add assembly /pump", "add assembly pump/set", "repeat 2 add part set/bolt",
                             "add part pump/frame", "add proxy pump/gear", "scene add", "view 1"}) {
      Play(line);
    }
    panel.calls.clear();
  }

  void Play(const std::string& line) { player.Play(*script::ParseLine(line)); }

  std::string FaultOf(const std::string& line)
  {
    try {
      Play(line);
    } catch (const script::ScriptError& error) {
      return error.what();
    }
    return "none";
  }

  [[nodiscard]] du::SmartPtr<memkernel::Instance> Find(const std::string& path) const
  {
    return script::InstanceFinder(world->GetMemTree()).Find(script::ParseLine("hide " + path)->paths.front());
  }

  const du::SmartPtr<memkernel::World> world = du::MakeSmart<memkernel::World>(1U);
  script::Stage stage{world};
  RecordingPanel panel;
  script::ScriptPlayer player{world, stage, panel};
};
