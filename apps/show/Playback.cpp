#include "Playback.h"

#include <iostream>
#include <sstream>
#include <string_view>
#include <utility>

#include "Interrupt.h"
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
    : m_panel(panel), m_showsTrace(options.trace), m_player(world, stage, panel)
{
}

ExitCode Playback::Play(ScriptSource& source)
{
  if (const ExitCode code = _WriteStart(); code != ExitOk) {
    return code;
  }
  while (const std::optional<std::string> line = source.ReadLine()) {
    try {
      if (const ExitCode code = _PlayLine(*line, source.GetLineNumber()); code != ExitOk) {
        return code;
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

// While nothing is at work Ctrl-C ends the process as ever.
bool Playback::_Settle()
{
  if (!m_panel.IsFiltering() && !m_panel.IsLoading()) {
    return m_panel.Settle();
  }
  const InterruptScope interrupt;
  return m_panel.Settle();
}

ExitCode Playback::_WriteStart()
{
  if (!_Settle()) {
    return ExitInterrupted;
  }
  m_isFine = m_panel.Check();
  m_lastPanel = m_showsTrace ? "" : _PrintPanel();
  return WriteOut(m_showsTrace ? m_panel.TakeTrace() : m_lastPanel) ? ExitOk : ExitFailure;
}

ExitCode Playback::_PlayLine(const std::string& line, std::size_t number)
{
  const std::optional<script::Command> command = script::ParseLine(line);
  if (!command) {
    return ExitOk;
  }
  const bool isInside = m_player.IsInBatch() && command->verb != script::Verb::EndBatch;
  if (!WriteOut((isInside ? ">   " : "\n> ") + texthost::MakePrintable(Trim(line)) + '\n')) {
    return ExitFailure;
  }
  m_player.Play(*command);
  if (!m_player.IsInBatch()) {
    m_panel.CatchUp();
  }
  if (!_Settle()) {
    return ExitInterrupted;
  }
  if (!m_player.IsInBatch()) {
    m_isFine = m_panel.Check() && m_isFine;
  } else if (!isInside) {
    m_batchLine = number;
  }
  return WriteOut(_DescribeOutcome(*command)) ? ExitOk : ExitFailure;
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
