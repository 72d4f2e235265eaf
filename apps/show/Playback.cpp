#include "Playback.h"

#include <iostream>
#include <sstream>
#include <string_view>
#include <utility>

#include "Output.h"
#include "script/ScriptError.h"
#include "script/ScriptParser.h"
#include "texthost/PrintableText.h"

namespace {

std::string_view Trim(std::string_view text)
{
  constexpr std::string_view blanks = " \t";
  const std::size_t start = text.find_first_not_of(blanks);
  return start == std::string_view::npos ? "" : text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

void Report(const ScriptSource& source, std::size_t line, const std::string& cause)
{
  const std::string place = source.GetName() + ':' + std::to_string(line) + ": ";
  std::cerr << "guitree-show: " << texthost::MakePrintable(place + cause) << '\n';
}

}  // namespace

Playback::Playback(const du::SmartPtr<memkernel::World>& world, script::Stage& stage, Panel& panel,
                   const Options& options)
    : m_world(world),
      m_panel(panel),
      m_showsTrace(options.trace),
      m_player(world, stage, [&panel](bool isInSight) { panel.SetInSight(isInSight); })
{
}

ExitCode Playback::Play(ScriptSource& source)
{
  if (!_WriteStart()) {
    return ExitFailure;
  }
  while (const std::optional<std::string> line = source.ReadLine()) {
    try {
      if (!_PlayLine(*line, source.GetLineNumber())) {
        return ExitFailure;
      }
    } catch (const script::ScriptError& error) {
      // What was done of a line that could not be played to its end.
      static_cast<void>(WriteOut(m_panel.TakeTrace()));
      Report(source, source.GetLineNumber(), error.what());
      return ExitFailure;
    }
  }
  return _End(source);
}

bool Playback::_WriteStart()
{
  m_isFine = m_panel.Check();
  m_lastPanel = m_showsTrace ? "" : _PrintPanel();
  return WriteOut(m_showsTrace ? m_panel.TakeTrace() : m_lastPanel);
}

bool Playback::_PlayLine(const std::string& line, std::size_t number)
{
  const std::optional<script::Command> command = script::ParseLine(line);
  if (!command) {
    return true;
  }
  const bool isInside = m_player.IsInBatch() && command->verb != script::Verb::EndBatch;
  if (!WriteOut((isInside ? ">   " : "\n> ") + texthost::MakePrintable(Trim(line)) + '\n')) {
    return false;
  }
  m_player.Play(*command);
  m_world->GetLoop().RunDue();
  if (!m_player.IsInBatch()) {
    m_isFine = m_panel.Check() && m_isFine;
  } else if (!isInside) {
    m_batchLine = number;
  }
  return WriteOut(_DescribeOutcome(*command));
}

std::string Playback::_DescribeOutcome(const script::Command& command)
{
  std::string trace = m_panel.TakeTrace();
  if (command.verb == script::Verb::Print) {
    return trace + _PrintPanel();
  }
  if (m_player.IsInBatch()) {
    return trace;
  }
  if (m_showsTrace) {
    return trace.empty() ? "(no calls)\n" : trace;
  }
  std::string panel = _PrintPanel();
  if (panel == m_lastPanel) {
    return "(the panel is as before)\n";
  }
  m_lastPanel = std::move(panel);
  return m_lastPanel;
}

std::string Playback::_PrintPanel() const
{
  std::ostringstream text;
  m_panel.Print(text);
  return text.view().empty() ? "(no rows)\n" : std::move(text).str();
}

ExitCode Playback::_End(const ScriptSource& source) const
{
  if (!source.GetError().empty()) {
    std::cerr << "guitree-show: " << texthost::MakePrintable(source.GetName()) << ": " << source.GetError() << '\n';
    return ExitFailure;
  }
  if (m_player.IsInBatch()) {
    Report(source, m_batchLine, "this batch has no 'end'");
    return ExitFailure;
  }
  return m_isFine ? ExitOk : ExitFailure;
}
