#include "Show.h"

#include <iostream>
#include <sstream>

#include "Interrupt.h"
#include "Output.h"
#include "Panel.h"
#include "Playback.h"
#include "ReadFiles.h"
#include "ScriptSource.h"
#include "memkernel/World.h"
#include "script/Stage.h"
#include "stepimport/Scene.h"
#include "texthost/PrintableText.h"

namespace {

/// A kernel for the length of one run.
class RunningWorld {
public:
  RunningWorld() { m_world->InstallForProcess(); }
  ~RunningWorld() { m_world->Shutdown(); }
  RunningWorld(const RunningWorld&) = delete;
  RunningWorld& operator=(const RunningWorld&) = delete;

  [[nodiscard]] const du::SmartPtr<memkernel::World>& Get() const noexcept { return m_world; }

private:
  const du::SmartPtr<memkernel::World> m_world = du::MakeSmart<memkernel::World>();
};

/// What is shown: the world with one scene of all that was read, and its view.
struct Session {
  RunningWorld world;
  ReadSummary read;
  script::Stage stage{world.Get()};
};

ExitCode Read(const Options& options, Session& session)
{
  session.read = ReadFiles(options.files, *session.world.Get());
  if (session.read.interrupted) {
    return ExitInterrupted;
  }
  if (session.read.files == 0) {
    return ExitFailure;
  }
  const stepimport::OpenedScene opened = stepimport::OpenScene(*session.world.Get());
  session.stage.Add(opened.scene, opened.view);
  session.stage.ActivateView(1);
  return ExitOk;
}

void TellCounts(const Options& options, std::size_t files, std::size_t rows)
{
  if (options.verbose) {
    std::cerr << "guitree-show: " << files << (files == 1 ? " file, " : " files, ") << rows
              << (rows == 1 ? " row\n" : " rows\n");
  }
}

struct Outcome {
  ExitCode exitCode = ExitOk;
  std::string text;
};

// Writes nothing to stdout: what is interrupted leaves nothing behind.
Outcome ReadAndShow(const Options& options)
{
  const InterruptScope interrupt;
  Session session;
  if (const ExitCode code = Read(options, session); code != ExitOk) {
    return {code, {}};
  }
  Panel panel(session.world.Get(), session.stage, options);
  if (!panel.Settle()) {
    return {ExitInterrupted, {}};
  }
  const bool isFine = panel.Check() && session.read.files == options.files.size();
  std::ostringstream text;
  if (options.trace) {
    text << panel.TakeTrace();
  } else {
    panel.Print(text);
  }
  if (InterruptScope::WasInterrupted()) {
    return {ExitInterrupted, {}};
  }
  TellCounts(options, session.read.files, panel.GetRowCount());
  return {isFine ? ExitOk : ExitFailure, std::move(text).str()};
}

ExitCode ReadWithInterrupt(const Options& options, Session& session)
{
  const InterruptScope interrupt;
  const ExitCode code = Read(options, session);
  return InterruptScope::WasInterrupted() ? ExitInterrupted : code;
}

// Once the files are read Ctrl-C ends the loads or a filter at work, and with them the script, and otherwise the
// process at once: what was played so far has been written.
ExitCode ReadAndPlay(const Options& options)
{
  ScriptSource source(*options.script);
  if (!source.GetError().empty()) {
    std::cerr << "guitree-show: " << texthost::MakePrintable(source.GetName()) << ": " << source.GetError() << '\n';
    return ExitFailure;
  }
  Session session;
  if (const ExitCode code = ReadWithInterrupt(options, session); code != ExitOk) {
    return code;
  }
  Panel panel(session.world.Get(), session.stage, options);
  const ExitCode code = Playback(session.world.Get(), session.stage, panel, options).Play(source);
  TellCounts(options, session.read.files, panel.GetRowCount());
  return session.read.files == options.files.size() ? code : ExitFailure;
}

}  // namespace

ExitCode Show(const Options& options)
{
  if (options.script) {
    return ReadAndPlay(options);
  }
  const Outcome outcome = ReadAndShow(options);
  return WriteOut(outcome.text) ? outcome.exitCode : ExitFailure;
}
