#include "Options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>

#include "Terminal.h"

namespace {

constexpr const char* s_description =
    "Shows the structure of STEP assemblies (AP203, AP214, AP242) as an indented tree.";

constexpr std::string_view s_aboutRows =
    R"(Names are printed in UTF-8. Characters that would break a line or steer the terminal are
escaped; [+N] stands for N rows that --depth leaves out. All that has a shape is shown in one scene.
These marks in front of the rows tell how:

)";

constexpr std::string_view s_aboutLines =
    R"(
Lines are drawn with ASCII characters where --ascii asks for it, or where stdout is a terminal
whose locale is not UTF-8; otherwise, in pipes and files always, with Unicode characters.
Colours are used on a terminal only, and not if NO_COLOR is set.

With several files the panel shows all of them under one root. A file that cannot be read is
named on stderr and left out, the others are shown, and the exit code is 1. References to
external files that are missing are warnings: they read as [failed].

)";

constexpr std::string_view s_aboutExit =
    R"(Exit codes:
  0    everything was shown
  1    a file could not be read, the output could not be written, or --check found a violation
  2    the command line is wrong
  130  reading was interrupted with Ctrl-C; nothing was printed to stdout)";

std::string MakeFooter()
{
  std::string text(s_aboutRows);
  return text.append(texthost::GetLegend()).append(s_aboutLines).append(s_aboutExit);
}

std::string FindFaultInDepth(const std::string& text)
{
  std::size_t depth = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), depth);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber ? "" : '\'' + text + "' is no number of levels";
}

struct Choices {
  bool plain = false;
  bool ascii = false;
  bool unicode = false;
};

void Declare(CLI::App& app, Options& options, Choices& choices)
{
  app.set_version_flag("--version", std::string("guitree-show ") + GUITREE_VERSION);
  app.add_option("FILE", options.files, "STEP files to show")->required()->type_name("");
  app.add_flag("--plain", choices.plain, "Leave out what rows tell besides their names: states, icons, selection");
  app.add_flag("--ascii", choices.ascii, "Draw lines with ASCII characters");
  app.add_flag("--unicode", choices.unicode, "Draw lines with Unicode characters");
  app.add_option("--depth", options.style.depth, "Show rows down to N levels below the root, 0 for the root alone")
      ->type_name("N")
      ->check(FindFaultInDepth);
  app.add_flag("--trace", options.trace, "Print the calls that the panel makes on its host instead of the tree");
  app.add_flag("--check", options.check, "Check these calls; violations go to stderr and make the exit code 1");
  app.add_flag("--verbose", options.verbose, "Tell on stderr how much was read");
  app.footer(MakeFooter());
  app.get_formatter()->label("REQUIRED", "");
  app.callback([&choices] {
    if (choices.ascii && choices.unicode) {
      throw CLI::ValidationError("--ascii and --unicode contradict each other");
    }
  });
}

void LookAtTerminal(const Choices& choices, texthost::PrintStyle& style)
{
  const bool isTerminal = terminal::IsStdoutTerminal();
  style.states = !choices.plain;
  style.ascii = choices.ascii || (!choices.unicode && isTerminal && !terminal::IsLocaleUtf8());
  style.color = isTerminal && terminal::AllowsColor();
}

}  // namespace

ParsedOptions ParseOptions(int argc, char** argv)
{
  Options options;
  Choices choices;
  CLI::App app(s_description, "guitree-show");
  Declare(app, options, choices);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& success) {
    app.exit(success);
    return {std::nullopt, ExitOk};
  } catch (const CLI::ParseError& error) {
    std::cerr << "guitree-show: " << error.what() << "\nTry 'guitree-show --help'.\n";
    return {std::nullopt, ExitUsage};
  }
  LookAtTerminal(choices, options.style);
  return {std::move(options), ExitOk};
}
