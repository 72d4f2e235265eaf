#include "script/Forms.h"

#include <algorithm>
#include <array>

namespace script {

namespace {

constexpr std::array s_forms{
    Form{"hide", Verb::Hide, Arguments::Paths, true, "hide them and all that is below them"},
    Form{"show", Verb::Show, Arguments::Paths, true, "show them and all that is below them"},
    Form{"thumbnail on", Verb::ThumbnailOn, Arguments::Paths, true, "show their thumbnails for their shapes"},
    Form{"thumbnail off", Verb::ThumbnailOff, Arguments::Paths, true, "show their shapes again"},
    Form{"select", Verb::Select, Arguments::Paths, true, "add them to the selection"},
    Form{"deselect", Verb::Deselect, Arguments::AnyPaths, true, "take them, or all, out of it"},
    Form{"highlight", Verb::Highlight, Arguments::Paths, true, "give them the associated highlight"},
    Form{"unhighlight", Verb::Unhighlight, Arguments::AnyPaths, true, "take it from them, or from all"},
    Form{"rename", Verb::Rename, Arguments::PathAndName, false, "give an instance another name"},
    Form{"add part", Verb::AddPart, Arguments::OnePath, false, "add PARENT/NAME, with a shape in all scenes"},
    Form{"add assembly", Verb::AddAssembly, Arguments::OnePath, false, "add PARENT/NAME, without a shape"},
    Form{"add proxy", Verb::AddProxy, Arguments::OnePath, false, "add PARENT/NAME, a proxy that is not expanded"},
    Form{"remove", Verb::Remove, Arguments::Paths, false, "take them out of the tree"},
    Form{"proxy expand", Verb::ExpandProxy, Arguments::Paths, false, "the content of these proxies is there"},
    Form{"proxy collapse", Verb::CollapseProxy, Arguments::Paths, false, "remove it again"},
    Form{"proxy fail", Verb::FailProxy, Arguments::Paths, false, "it could not be read"},
    Form{"proxy settle", Verb::SettleProxy, Arguments::Paths, false, "make ordinary instances of them"},
    Form{"view", Verb::ActivateView, Arguments::Number, false, "go to a view; each scene has the one of its number"},
    Form{"view none", Verb::ActivateNoView, Arguments::None, false, "leave the view"},
    Form{"view remove", Verb::RemoveView, Arguments::Number, false, "take a view away"},
    Form{"view type", Verb::SetViewType, Arguments::NumberAndName, false,
         "give a view a type; each has its own filter"},
    Form{"scene add", Verb::AddScene, Arguments::None, false, "add a scene of everything, and its view"},
    Form{"scene remove", Verb::RemoveScene, Arguments::Number, false, "take a scene away, not its view"},
    Form{"panel hide", Verb::HidePanel, Arguments::None, false, "the panel goes out of sight"},
    Form{"panel show", Verb::ShowPanel, Arguments::None, false, "the panel comes back"},
    Form{"bodies off", Verb::LeaveBodiesOut, Arguments::None, false, "leave bodies out"},
    Form{"bodies on", Verb::ShowBodies, Arguments::None, false, "show them again"},
    Form{"collapse on", Verb::Collapse, Arguments::None, false, "let the first of equal siblings stand for all"},
    Form{"collapse off", Verb::Uncollapse, Arguments::None, false, "show them all again"},
    Form{"filter", Verb::Filter, Arguments::Filter, false, "show what matches; OPTIONS are those for filters above"},
    Form{"filter off", Verb::FilterOff, Arguments::None, false, "show everything again"},
    Form{"filter hold", Verb::HoldFilter, Arguments::None, false, "filters stop at their first match"},
    Form{"filter resume", Verb::ResumeFilter, Arguments::None, false, "they go on to their end again"},
    Form{"filter cancel", Verb::CancelFilter, Arguments::None, false, "end the filter that is at work"},
    Form{"sort", Verb::Sort, Arguments::Sorting, false, "sort what a filter shows by a column"},
    Form{"sort off", Verb::SortOff, Arguments::None, false, "show it in the order of the assembly again"},
    Form{"results", Verb::SetResults, Arguments::Paths, false, "make these the list of results"},
    Form{"results off", Verb::ResultsOff, Arguments::None, false, "there is no list of results any more"},
    Form{"expand", Verb::Expand, Arguments::Paths, false, "open what is left out below them"},
    Form{"batch", Verb::BeginBatch, Arguments::None, false, "make one update of the lines up to 'end'"},
    Form{"end", Verb::EndBatch, Arguments::None, false, "the end of a batch"},
    Form{"print", Verb::Print, Arguments::None, false, "print the panel, also in a batch or a trace"},
};

std::string_view Describe(Arguments arguments)
{
  switch (arguments) {
    case Arguments::None:
      return "";
    case Arguments::OnePath:
      return " PATH";
    case Arguments::Paths:
      return " PATH...";
    case Arguments::AnyPaths:
      return " [PATH...]";
    case Arguments::PathAndName:
      return " PATH NAME";
    case Arguments::Number:
      return " N";
    case Arguments::NumberAndName:
      return " N NAME";
    case Arguments::Filter:
      return " [TEXT] [OPTIONS]";
    case Arguments::Sorting:
      return " COLUMN [descending]";
  }
  return "";
}

}  // namespace

std::span<const Form> GetForms()
{
  return s_forms;
}

const Form& GetForm(Verb verb)
{
  return *std::find_if(s_forms.begin(), s_forms.end(), [verb](const Form& form) { return form.verb == verb; });
}

std::string GetUsage(const Form& form)
{
  return std::string(form.words).append(Describe(form.arguments));
}

}  // namespace script
