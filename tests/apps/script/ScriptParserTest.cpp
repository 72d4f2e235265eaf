#include "script/ScriptParser.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "FaultOf.h"
#include "script/Forms.h"

namespace {

using script::Arguments;
using script::Command;
using script::Form;
using script::ParseLine;
using script::Path;
using script::PathStep;
using script::Verb;
using scripttest::FaultOf;

TEST(ParseLine, EmptyLinesAndComments_AreNoCommands)
{
  EXPECT_EQ(ParseLine(""), std::nullopt);
  EXPECT_EQ(ParseLine("   # hide frame:1"), std::nullopt);
}

TEST(ParseLine, Command_TakesItsPaths)
{
  EXPECT_EQ(
      ParseLine("hide pump/frame:1 bolt:1#2  # both"),
      (Command{.verb = Verb::Hide, .paths = {Path{.steps = {{"pump"}, {"frame:1"}}}, Path{.steps = {{"bolt:1", 2}}}}}));
}

TEST(ParseLine, Rename_TakesTheNewNameLast)
{
  EXPECT_EQ(ParseLine("rename frame:1 \"a/b #1\""),
            (Command{.verb = Verb::Rename, .paths = {Path{.steps = {{"frame:1"}}}}, .name = "a/b #1"}));
  EXPECT_EQ(ParseLine("rename frame:1 \"\"")->name, "");
}

TEST(ParseLine, ViewType_TakesTheNumberAndTheType)
{
  EXPECT_EQ(ParseLine("view type 2 \"cut view\""),
            (Command{.verb = Verb::SetViewType, .name = "cut view", .number = 2}));
  EXPECT_EQ(FaultOf("view type 2"), "write: view type N NAME");
  EXPECT_EQ(FaultOf("view type cut 2"), "cut is no number from 1 on");
  EXPECT_EQ(FaultOf("view type 2 a/b"), "a type with '/' or '#' must be in quotes");
}

TEST(ParseLine, Prefixes_ComeInAnyOrder)
{
  const Command expected{.verb = Verb::Hide, .times = 3, .scene = 2, .paths = {Path{.steps = {{"a"}}}}};

  EXPECT_EQ(ParseLine("repeat 3 in 2 hide a"), expected);
  EXPECT_EQ(ParseLine("in 2 repeat 3 hide a"), expected);
}

TEST(ParseLine, LongerCommand_GoesBeforeAShorterOne)
{
  EXPECT_EQ(ParseLine("view 2"), (Command{.verb = Verb::ActivateView, .number = 2}));
  EXPECT_EQ(ParseLine("view none"), (Command{.verb = Verb::ActivateNoView}));
  EXPECT_EQ(ParseLine("view remove 2"), (Command{.verb = Verb::RemoveView, .number = 2}));
  EXPECT_EQ(ParseLine("results off"), (Command{.verb = Verb::ResultsOff}));
  EXPECT_EQ(ParseLine("results \"off\""), (Command{.verb = Verb::SetResults, .paths = {Path{.steps = {{"off"}}}}}));
}

TEST(ParseLine, QuotedWord_IsANameAndNoCommand)
{
  EXPECT_EQ(ParseLine("hide \"repeat\"")->paths.front().steps.front().name, "repeat");
  EXPECT_EQ(FaultOf("\"hide\" a"), "unknown command '\"hide\"'");
}

TEST(ParseLine, UnknownCommand_IsNamed)
{
  EXPECT_EQ(FaultOf("explode frame:1"), "unknown command 'explode'");
  EXPECT_EQ(FaultOf("Hide frame:1"), "unknown command 'Hide'");
}

TEST(ParseLine, HalfACommand_IsToldTheWhole)
{
  EXPECT_EQ(FaultOf("scene"), "write: scene add, or scene remove N");
  EXPECT_EQ(FaultOf("scene drop 2"), "unknown command 'scene'; write: scene add, or scene remove N");
}

TEST(ParseLine, WrongCountOfArguments_TellsTheUsage)
{
  EXPECT_EQ(FaultOf("hide"), "write: hide PATH...");
  EXPECT_EQ(FaultOf("rename frame:1"), "write: rename PATH NAME");
  EXPECT_EQ(FaultOf("rename frame:1 a b"), "write: rename PATH NAME");
  EXPECT_EQ(FaultOf("add part"), "write: add part PATH");
  EXPECT_EQ(FaultOf("add part a b"), "write: add part PATH");
  EXPECT_EQ(FaultOf("view"), "write: view N");
  EXPECT_EQ(FaultOf("end now"), "write: end");
  EXPECT_EQ(FaultOf("repeat 3"), "write: repeat N COMMAND");
  EXPECT_EQ(FaultOf("in"), "write: in N COMMAND");
}

TEST(ParseLine, Numbers_AreWholeAndFromOneOn)
{
  EXPECT_EQ(FaultOf("view two"), "two is no number from 1 on");
  EXPECT_EQ(FaultOf("view 0"), "0 is no number from 1 on");
  EXPECT_EQ(FaultOf("view 1.5"), "1.5 is no number from 1 on");
  EXPECT_EQ(FaultOf("repeat -1 print"), "-1 is no number from 1 on");
  EXPECT_EQ(FaultOf("view 99999999999999999999"), "99999999999999999999 is no number from 1 on");
  EXPECT_EQ(FaultOf("repeat 1000001 print"), "more than 1000000 times is too often");
}

TEST(ParseLine, Prefixes_AreRefusedWhereTheySayNothing)
{
  EXPECT_EQ(FaultOf("repeat 2 batch"), "'batch' cannot be repeated");
  EXPECT_EQ(FaultOf("repeat 2 end"), "'end' cannot be repeated");
  EXPECT_EQ(FaultOf("in 2 rename a b"), "'rename' is not about one scene: leave out 'in'");
}

TEST(ParseLine, NewName_MustBeOneName)
{
  for (const char* line : {"rename a b/c", "rename a /b", "rename a b#2"}) {
    EXPECT_EQ(FaultOf(line), "a new name with '/' or '#' must be in quotes") << line;
  }
}

rc::Gen<Path> AnyPath()
{
  // Some names are those of commands.
  const auto name = rc::gen::weightedOneOf<std::string>(
      {{9, rc::gen::arbitrary<std::string>()}, {1, rc::gen::element<std::string>("off", "on")}});
  const auto step = rc::gen::construct<PathStep>(name, rc::gen::inRange<std::size_t>(0, 5));
  return rc::gen::construct<Path>(rc::gen::arbitrary<bool>(),
                                  rc::gen::nonEmpty(rc::gen::container<std::vector<PathStep>>(step)));
}

std::vector<Path> PickPaths(Arguments arguments)
{
  switch (arguments) {
    case Arguments::None:
    case Arguments::Number:
    case Arguments::NumberAndName:
    case Arguments::Filter:
    case Arguments::Sorting:
      return {};
    case Arguments::OnePath:
    case Arguments::PathAndName:
      return {*AnyPath()};
    case Arguments::Paths:
      return *rc::gen::nonEmpty(rc::gen::container<std::vector<Path>>(AnyPath()));
    case Arguments::AnyPaths:
      return *rc::gen::container<std::vector<Path>>(AnyPath());
  }
  return {};
}

std::string PickColumn()
{
  return *rc::gen::element<std::string>("Name", "layer", "SOURCE FILE", "Product Name");
}

/// Any settings without a fault.
FilterSettings PickFilter()
{
  FilterSettings settings;
  const auto anyText = rc::gen::suchThat(rc::gen::arbitrary<std::string>(),
                                         [](const std::string& text) { return FindFault({.text = text}).empty(); });
  const auto taken = rc::gen::element<std::string>("off", "hold", "--parts", "--x", "two words", "a/b #1");
  if (*rc::gen::arbitrary<bool>()) {
    settings.text = *rc::gen::oneOf(anyText, taken);
    settings.columns.resize(*rc::gen::inRange<std::size_t>(0, 3));
    std::generate(settings.columns.begin(), settings.columns.end(), PickColumn);
  }
  for (const FilterFlag& flag : GetFilterFlags()) {
    settings.*(flag.isOn) = *rc::gen::arbitrary<bool>();
  }
  settings.matchCase = settings.text && settings.matchCase;
  settings.wholeWord = settings.text && settings.wholeWord;
  settings.hidden = settings.hidden && !settings.visible;
  settings.parts = settings.parts || !settings.IsOn();
  if (settings.descending || *rc::gen::arbitrary<bool>()) {
    settings.sort = PickColumn();
  }
  return settings;
}

FilterSettings PickSettings(Arguments arguments)
{
  switch (arguments) {
    case Arguments::Filter:
      return PickFilter();
    case Arguments::Sorting:
      return {.sort = PickColumn(), .descending = *rc::gen::arbitrary<bool>()};
    default:
      return {};
  }
}

Command PickCommand(const Form& form)
{
  const bool isBracket = form.verb == Verb::BeginBatch || form.verb == Verb::EndBatch;
  Command command{.verb = form.verb, .paths = PickPaths(form.arguments)};
  command.times = isBracket ? 1 : *rc::gen::inRange<std::size_t>(1, 300);
  command.scene = form.isAboutScene ? *rc::gen::inRange<std::size_t>(0, 4) : 0;
  const bool hasNumber = form.arguments == Arguments::Number || form.arguments == Arguments::NumberAndName;
  const bool hasName = form.arguments == Arguments::PathAndName || form.arguments == Arguments::NumberAndName;
  command.name = hasName ? *rc::gen::arbitrary<std::string>() : "";
  command.filter = PickSettings(form.arguments);
  command.number = hasNumber ? *rc::gen::inRange<std::size_t>(1, 9) : 0;
  return command;
}

RC_GTEST_PROP(ToText, OfAnyCommand_IsReadBackAsItIs, ())
{
  const std::vector<Form> forms(script::GetForms().begin(), script::GetForms().end());
  const Command command = PickCommand(forms.at(*rc::gen::inRange<std::size_t>(0, forms.size())));

  const std::string line = ToText(command);

  RC_LOG() << line << '\n';
  RC_ASSERT(line.find('\n') == std::string::npos);
  RC_ASSERT(ParseLine(line) == command);
}

TEST(ToText, QuotesNames_OnlyWhereTheyNeedIt)
{
  const Command command{.verb = Verb::Rename,
                        .times = 2,
                        .paths = {Path{.isFromRoot = true, .steps = {{"pump"}, {"bolt set", 2}, {"back\\slash"}}}},
                        .name = "a \"b\" \\ \x01"};

  EXPECT_EQ(ToText(command), R"(repeat 2 rename /pump/"bolt set"#2/back\slash "a \"b\" \\ \x01")");
}

TEST(GetForms, EachVerb_HasOneForm)
{
  for (const Form& form : script::GetForms()) {
    EXPECT_EQ(&script::GetForm(form.verb), &form) << form.words;
  }
}

TEST(GetForms, EachForm_IsToldInTheGuide)
{
  std::ifstream file(GUIDE);
  const std::string guide(std::istreambuf_iterator<char>(file), {});

  for (const Form& form : script::GetForms()) {
    EXPECT_NE(guide.find("| `" + GetUsage(form) + "` |"), std::string::npos) << GetUsage(form);
  }
}

}  // namespace
