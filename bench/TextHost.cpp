// The whole way to text: a population into the host that keeps rows, and its printing.

#include <cstddef>
#include <ostream>
#include <streambuf>

#include <benchmark/benchmark.h>

#include "support/Measure.h"
#include "support/Panel.h"
#include "support/Shapes.h"
#include "support/Walk.h"
#include "texthost/TextHost.h"

namespace bench {
namespace {

/// Takes text, counts its lines and keeps nothing.
class LineCounter final : public std::streambuf {
public:
  [[nodiscard]] std::size_t GetCount() const noexcept { return m_count; }

protected:
  std::streamsize xsputn(const char* text, std::streamsize length) override
  {
    for (std::streamsize i = 0; i < length; ++i) {
      m_count += text[i] == '\n' ? 1 : 0;
    }
    return length;
  }
  int_type overflow(int_type character) override
  {
    m_count += character == '\n' ? 1 : 0;
    return traits_type::not_eof(character);
  }

private:
  std::size_t m_count = 0;
};

double TimePrint(const texthost::TextHost& host, std::size_t rows)
{
  LineCounter lines;
  std::ostream out(&lines);
  const double seconds = Time([&] { host.Print(out); });
  Require(lines.GetCount() == rows, "each row is printed on a line of its own");
  return seconds;
}

/// What printing cannot do without: the walk, and the names.
double TimeNames(const zelk::BaseTree& tree, std::size_t rows)
{
  LineCounter lines;
  std::ostream out(&lines);
  const double seconds = Time([&] {
    WalkDepthFirst(tree, [&](const zelk::BaseInstance& instance, std::size_t /*depth*/) {
      out << instance.GetObjectName().GetView() << '\n';
    });
  });
  Require(lines.GetCount() == rows, "each name is printed on a line of its own");
  return seconds;
}

Figures Fill(std::size_t rows)
{
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, rows);
  return RunRounds(rows, [&](Figures& figures) {
    texthost::TextHost host;
    Panel panel(tree, host);
    IdleHost idleHost;
    Panel idlePanel(tree, idleHost);
    const double before = GetAllocatedBytes();
    const double seconds = Time([&] { panel.Populate(); });
    figures["bytes_row"] = (GetAllocatedBytes() - before) / static_cast<double>(rows);
    figures["x_idle_host"] = seconds / Time([&] { idlePanel.Populate(); });
    Require(host.GetRowCount() == rows, "the host has a row of each instance");
    return seconds;
  });
}

Figures Print(std::size_t rows)
{
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, rows);
  texthost::TextHost host;
  Panel panel(tree, host);
  panel.Populate();
  return RunRounds(rows, [&](Figures& figures) {
    const double seconds = TimePrint(host, rows);
    figures["x_names"] = seconds / TimeNames(*tree, rows);
    return seconds;
  });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  bench::Register("TextHost/fill", {10'000, 100'000, 1'000'000}, bench::Fill);
  bench::Register("TextHost/print", {10'000, 100'000, 1'000'000}, bench::Print);
  return bench::RunAll(argc, argv);
}
