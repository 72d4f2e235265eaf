#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <future>
#include <string>
#include <thread>

#include "Interrupt.h"
#include "PanelStage.h"

namespace {

using namespace std::chrono_literals;

/// Keeps the filter behind it from beginning before the panel has looked at Ctrl-C, and so from being too fast for it.
class UntilCtrlC final : public du::Task {
public:
  explicit UntilCtrlC(memkernel::OwnerLoop& loop) : m_loop(loop) {}

  void Run() override
  {
    while (!InterruptScope::WasInterrupted()) {
      std::this_thread::sleep_for(1ms);
    }
    // Between two turns of the loop.
    m_loop.Invoke([this] { m_loop.Invoke([this] { m_hasLooked.set_value(); }); });
    m_hasLooked.get_future().wait();
  }

private:
  memkernel::OwnerLoop& m_loop;
  std::promise<void> m_hasLooked;
};

/// What runs on the terminal. Answers the exit code.
int FilterUntilCtrlC()
{
  const InterruptScope interrupt;
  PanelStage stage;
  stage.GetWorld()->GetMemTaskPool().InsertTask(du::MakeSmart<UntilCtrlC>(stage.GetWorld()->GetLoop()));
  Options options;
  options.filter.text = "bolt";
  Panel panel(stage.GetWorld(), stage.stage, options);
  const bool isInterrupted = !panel.Settle();
  const bool isCancelled = PanelStage::TextOf(panel) == "(the filter was cancelled)\n";
  return isInterrupted && isCancelled ? ExitInterrupted : ExitFailure;
}

/// What runs on the terminal. Answers the exit code.
int LoadUntilCtrlC()
{
  const InterruptScope interrupt;
  PanelStage stage;
  const auto part = stage.AddPart("gear", [](memkernel::LoadContext& context) {
    while (!context.IsCanceled()) {
      std::this_thread::sleep_for(1ms);
    }
    return zelk::ShapeDataNone;
  });
  Options options;
  options.filter.text = "bolt";
  Panel panel(stage.GetWorld(), stage.stage, options);
  const bool isInterrupted = !panel.Settle();
  return isInterrupted && !panel.IsFiltering() ? ExitInterrupted : ExitFailure;
}

/// A process on a terminal of its own.
class OnATerminal {
public:
  explicit OnATerminal(int (*program)())
  {
    // What waits in buffers would be written twice.
    std::fflush(nullptr);
    m_process = forkpty(&m_terminal, nullptr, nullptr, nullptr);
    if (m_process == 0) {
      _exit(program());
    }
  }
  ~OnATerminal() { close(m_terminal); }
  OnATerminal(const OnATerminal&) = delete;
  OnATerminal& operator=(const OnATerminal&) = delete;

  [[nodiscard]] bool HasBegun() const { return m_process > 0; }
  /// Everything that was written up to and with this text, or to the end.
  [[nodiscard]] std::string ReadUpTo(const std::string& text) const
  {
    std::string all;
    std::array<char, 256> buffer{};
    while (text.empty() || all.find(text) == std::string::npos) {
      // At the end of the process a read fails.
      const ssize_t count = read(m_terminal, buffer.data(), buffer.size());
      if (count <= 0) {
        break;
      }
      all.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return all;
  }
  void PressCtrlC() const { EXPECT_EQ(write(m_terminal, "\x03", 1), 1); }
  [[nodiscard]] int WaitForExitCode() const
  {
    int status = 0;
    EXPECT_EQ(waitpid(m_process, &status, 0), m_process);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

private:
  int m_terminal = -1;
  pid_t m_process = -1;
};

TEST(CtrlC, WhileAFilterIsAtWork_CancelsItAndLeavesTheTerminalClean)
{
  OnATerminal child(FilterUntilCtrlC);
  ASSERT_TRUE(child.HasBegun());
  EXPECT_EQ(child.ReadUpTo("Filtering 0%"), "\r\x1B[KFiltering 0%");

  child.PressCtrlC();
  const std::string rest = child.ReadUpTo("");

  EXPECT_EQ(child.WaitForExitCode(), ExitInterrupted);
  // The terminal itself echoes the key.
  EXPECT_EQ(rest.substr(rest.size() - std::min<std::size_t>(rest.size(), 4)), "\r\x1B[K");
}

TEST(CtrlC, WhileShapesAreLoaded_EndsThemAndLeavesTheTerminalClean)
{
  OnATerminal child(LoadUntilCtrlC);
  ASSERT_TRUE(child.HasBegun());
  EXPECT_EQ(child.ReadUpTo("Loading shapes 0%"), "\r\x1B[KLoading shapes 0%");

  child.PressCtrlC();
  const std::string rest = child.ReadUpTo("");

  EXPECT_EQ(child.WaitForExitCode(), ExitInterrupted);
  EXPECT_EQ(rest.substr(rest.size() - std::min<std::size_t>(rest.size(), 4)), "\r\x1B[K");
}

}  // namespace
