#include "Show.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <sstream>

#include "Interrupt.h"
#include "Panel.h"
#include "ReadFiles.h"
#include "memkernel/World.h"

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

bool Write(const std::string& text)
{
  errno = 0;
  std::cout.write(text.data(), static_cast<std::streamsize>(text.size())).flush();
  if (std::cout) {
    return true;
  }
  // NOLINTNEXTLINE(concurrency-mt-unsafe): the readers have ended, no other thread asks for an error text
  std::cerr << "guitree-show: cannot write: " << std::strerror(errno) << '\n';
  return false;
}

void TellCounts(std::size_t files, std::size_t rows)
{
  std::cerr << "guitree-show: " << files << (files == 1 ? " file, " : " files, ") << rows
            << (rows == 1 ? " row\n" : " rows\n");
}

struct Outcome {
  ExitCode exitCode = ExitOk;
  std::string text;
};

// Writes nothing to stdout: what is interrupted leaves nothing behind.
Outcome ReadAndShow(const Options& options)
{
  const InterruptScope interrupt;
  const RunningWorld world;
  const ReadSummary read = ReadFiles(options.files, *world.Get());
  if (read.interrupted) {
    return {ExitInterrupted, {}};
  }
  if (read.files == 0) {
    return {ExitFailure, {}};
  }
  Panel panel(world.Get(), options);
  const bool isFine = panel.Check() && read.files == options.files.size();
  std::ostringstream text;
  panel.Print(text);
  if (InterruptScope::WasInterrupted()) {
    return {ExitInterrupted, {}};
  }
  if (options.verbose) {
    TellCounts(read.files, panel.GetRowCount());
  }
  return {isFine ? ExitOk : ExitFailure, std::move(text).str()};
}

}  // namespace

ExitCode Show(const Options& options)
{
  const Outcome outcome = ReadAndShow(options);
  return Write(outcome.text) ? outcome.exitCode : ExitFailure;
}
