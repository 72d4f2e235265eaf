#pragma once

#include <cstddef>
#include <string>

#include "Options.h"
#include "Panel.h"
#include "ScriptSource.h"
#include "memkernel/World.h"
#include "script/ScriptPlayer.h"
#include "script/Stage.h"

/// Plays a script line by line on the world behind a panel, and writes each line and what came of it to stdout: the
/// panel where it has changed, or with `--trace` the calls. Ends before its panel; owner's thread.
class Playback {
public:
  Playback(const du::SmartPtr<memkernel::World>& world, script::Stage& stage, Panel& panel, const Options& options);

  /// Writes the panel as it is, and plays up to the end or to the first line that cannot be played, which is named on
  /// stderr. Checks the panel after each line outside of a batch.
  [[nodiscard]] ExitCode Play(ScriptSource& source);

private:
  [[nodiscard]] ExitCode _WriteStart();
  [[nodiscard]] bool _Settle();
  /// `ExitOk` where the script goes on.
  [[nodiscard]] ExitCode _PlayLine(const std::string& line, std::size_t number);
  [[nodiscard]] std::string _DescribeOutcome(const script::Command& command);
  [[nodiscard]] std::string _PrintPanel() const;
  [[nodiscard]] ExitCode _End(const ScriptSource& source) const;

  Panel& m_panel;
  const bool m_showsTrace;
  script::ScriptPlayer m_player;
  std::size_t m_batchLine = 0;
  std::string m_lastPanel;
  bool m_isFine = true;
};
