#include "support/Child.h"

#include <array>
#include <cstdio>
#include <exception>
#include <iomanip>
#include <limits>
#include <sstream>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

namespace bench {
namespace {

constexpr int s_succeeded = 0;
constexpr int s_failed = 1;

struct Pipe {
  Pipe()
  {
    if (::pipe(ends.data()) != 0) {
      throw std::runtime_error("no pipe to the measuring process");
    }
  }

  [[nodiscard]] int GetReader() const noexcept { return ends[0]; }
  [[nodiscard]] int GetWriter() const noexcept { return ends[1]; }

  std::array<int, 2> ends{};
};

void WriteAll(int file, const std::string& text)
{
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t part = ::write(file, text.data() + written, text.size() - written);
    if (part <= 0) {
      throw std::runtime_error("the figures could not be written");
    }
    written += static_cast<std::size_t>(part);
  }
}

[[nodiscard]] std::string ReadAll(int file)
{
  std::string text;
  std::array<char, 4096> buffer{};
  for (ssize_t part = 0; (part = ::read(file, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(part));
  }
  return text;
}

[[nodiscard]] int Measure(const std::function<Figures()>& measure, int file)
{
  try {
    std::ostringstream text;
    text << std::setprecision(std::numeric_limits<double>::max_digits10);
    for (const auto& [name, value] : measure()) {
      text << name << ' ' << value << '\n';
    }
    WriteAll(file, text.str());
    return s_succeeded;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench: %s\n", error.what());
    return s_failed;
  }
}

}  // namespace

Figures MeasureInChild(const std::function<Figures()>& measure)
{
  const Pipe pipe;
  const pid_t child = ::fork();
  if (child < 0) {
    throw std::runtime_error("no process to measure in");
  }
  if (child == 0) {
    ::close(pipe.GetReader());
    ::_exit(Measure(measure, pipe.GetWriter()));
  }
  ::close(pipe.GetWriter());
  std::istringstream text(ReadAll(pipe.GetReader()));
  ::close(pipe.GetReader());
  int status = 0;
  if (::waitpid(child, &status, 0) != child || status != s_succeeded) {
    throw std::runtime_error("a measurement failed");
  }
  Figures figures;
  std::string name;
  for (double value = 0; text >> name >> value;) {
    figures[name] = value;
  }
  return figures;
}

}  // namespace bench
