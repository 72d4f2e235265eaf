#include "Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <iostream>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Terminal.h"
#include "script/Forms.h"
#include "texthost/PrintableText.h"

namespace {

constexpr const char* s_description =
    "Shows the structure of STEP assemblies (AP203, AP214, AP242) as an indented tree.";

constexpr std::string_view s_filter = "--filter";

constexpr std::string_view s_aboutRows =
    R"(Names are printed in UTF-8. Characters that would break a line or steer the terminal are
escaped; [+N] stands for N rows that --depth leaves out. All that has a shape is loaded and shown in
one scene. These marks in front of the rows tell how:

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

constexpr std::string_view s_aboutFilters =
    R"(A filter shows what meets all its options, with everything above it. The words of --filter have to
be found in the name, in any order: nut finds Donut. A word with * (anything) or ? (one character)
has to match the whole name: nut*. In "quotes" blanks and * stand for themselves. Upper and lower
case are one, in any language. Where nothing is found the last line is (no match). With --list there
is nothing above what is found. --siblings, --list, --follow and --sort go with another option of a
filter, or with --collapse. A text that is called like an option is looked for by --filter=--parts.
On a terminal a filter that takes long tells how far it is. Columns of --column and --sort:
)";

constexpr std::string_view s_aboutScripts =
    R"(With --script each line of a script is one command, and the panel is printed after each, or with
--trace the calls that it made:

)";

constexpr std::string_view s_aboutPaths =
    R"(
A PATH is a name, or names with / between them, each below the one before it; /NAME is the root.
NAME#2 is the second of several. Names with blanks, / or # are written in "quotes". A line or the
rest of it that begins with # is a comment.

)";

constexpr std::string_view s_aboutExit =
    R"(Exit codes:
  0    everything was shown
  1    a file or a line of the script could not be read or played, the output could not be written,
       or --check found a violation
  2    the command line is wrong
  130  Ctrl-C has ended the reading or a filter: a script goes no further, and without one nothing
       was printed to stdout)";

void AppendLine(std::string& text, std::string usage, std::string_view summary)
{
  constexpr std::size_t column = 26;
  usage.resize(std::max(column, usage.size() + 1), ' ');
  text.append("  ").append(usage).append(summary) += '\n';
}

std::string MakeFooter()
{
  std::string text(s_aboutRows);
  text.append(texthost::GetLegend()).append(s_aboutLines);
  text.append(s_aboutFilters).append("  ").append(ListColumns()).append("\n\n").append(s_aboutScripts);
  for (const script::Form& form : script::GetForms()) {
    AppendLine(text, script::GetUsage(form), form.summary);
  }
  AppendLine(text, "repeat N COMMAND", "play a command N times");
  AppendLine(text, "in N COMMAND", "the first eight: in scene N, not in that of the view");
  return text.append(s_aboutPaths).append(s_aboutExit);
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

void DeclareFilter(CLI::App& app, FilterSettings& filter)
{
  constexpr const char* group = "Filter";
  app.add_option(std::string(s_filter), filter.text, "Show only what has this text in its name")
      ->type_name("TEXT")
      ->group(group);
  app.add_option("--column", filter.columns, "Look for the text in this column instead; may be repeated")
      ->type_name("NAME")
      ->allow_extra_args(false)
      ->group(group);
  for (const FilterFlag& flag : GetFilterFlags()) {
    if (flag.isOn == &FilterSettings::descending) {
      app.add_option("--sort", filter.sort, "Sort what is shown by this column")->type_name("COLUMN")->group(group);
    }
    app.add_flag(std::string(flag.name), filter.*(flag.isOn), std::string(flag.summary))->group(group);
  }
}

bool IsOption(const CLI::App& app, std::string_view argument)
{
  const std::string name(argument.substr(0, argument.find('=')));
  return name.starts_with('-') && app.get_option_no_throw(name);
}

// What follows an option is its value, whatever it reads like: where the text was left out, the next option would pass
// for it.
std::string FindForgottenText(const CLI::App& app, std::span<const std::string_view> arguments)
{
  for (std::size_t i = 2; i < arguments.size() && arguments[i - 1] != "--"; ++i) {
    if (arguments[i - 1] == s_filter && IsOption(app, arguments[i])) {
      std::string fault = "--filter needs a text: to look for '";
      return fault.append(arguments[i]).append("' write --filter=").append(arguments[i]);
    }
  }
  return {};
}

std::string FindFault(const Choices& choices, const Options& options)
{
  if (choices.ascii && choices.unicode) {
    return "--ascii and --unicode contradict each other";
  }
  if (options.noBodies && options.filter.bodies && !options.filter.parts) {
    return "--no-bodies and --bodies contradict each other";
  }
  const std::string fault = FindFault(options.filter);
  return fault.empty() && !options.collapse ? FindNeedOfAFilter(options.filter) : fault;
}

void ThrowIfFaulty(const std::string& fault)
{
  if (!fault.empty()) {
    throw CLI::ValidationError(fault);
  }
}

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
  app.add_flag("--no-bodies", options.noBodies, "Leave bodies out");
  app.add_flag("--collapse", options.collapse, "Let the first of equal siblings stand for all of them");
  app.add_flag("--trace", options.trace, "Print the calls that the panel makes on its host instead of the tree");
  app.add_flag("--check", options.check, "Check these calls; violations go to stderr and make the exit code 1");
  app.add_option("--script", options.script, "Play the commands of a file, or of the standard input for -")
      ->type_name("FILE");
  DeclareFilter(app, options.filter);
  app.add_flag("--verbose", options.verbose, "Tell on stderr how much was read");
  app.footer(MakeFooter());
  app.get_formatter()->label("REQUIRED", "");
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
  const std::vector<std::string_view> arguments(argv, argv + argc);
  app.callback([&] {
    ThrowIfFaulty(FindForgottenText(app, arguments));
    ThrowIfFaulty(FindFault(choices, options));
  });
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& success) {
    app.exit(success);
    return {std::nullopt, ExitOk};
  } catch (const CLI::ParseError& error) {
    std::cerr << "guitree-show: " << texthost::MakePrintable(error.what()) << "\nTry 'guitree-show --help'.\n";
    return {std::nullopt, ExitUsage};
  }
  LookAtTerminal(choices, options.style);
  return {std::move(options), ExitOk};
}
