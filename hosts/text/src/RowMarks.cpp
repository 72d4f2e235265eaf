#include "RowMarks.h"

#include <algorithm>
#include <array>

#include "RowName.h"

namespace texthost {

namespace {

struct IconWords {
  int icon;
  const char* words;
};

constexpr int s_iconPlain = 0;
constexpr int s_iconFailed = 16;

constexpr std::array s_iconWords{
    IconWords{2, "no shape"},
    IconWords{6, "not loaded"},
    IconWords{8, "proxy, no shape"},
    IconWords{10, "proxy"},
    IconWords{12, "proxy, copyrights rejected"},
    IconWords{14, "proxy, shape failed"},
    IconWords{18, "thumbnail"},
    IconWords{20, "thumbnail only"},
    IconWords{24, "compared, first"},
    IconWords{26, "compared"},
    IconWords{28, "shape failed"},
    IconWords{30, "copyrights rejected"},
    IconWords{32, "collapsed"},
    IconWords{34, "collapsed, no shape"},
    IconWords{36, "collapsed, thumbnail"},
    IconWords{38, "collapsed, thumbnail only"},
    IconWords{40, "collapsed, shape failed"},
    IconWords{42, "collapsed, copyrights rejected"},
    IconWords{44, "body"},
    IconWords{46, "construction body"},
    IconWords{48, "body, no shape"},
    IconWords{50, "body, shape failed"},
    IconWords{52, "construction body, shape failed"},
};

}  // namespace

const char* GetVisibleMark(guitree::VisibleState state)
{
  switch (state) {
    case guitree::VisibleStateNone:
      return "   ";
    case guitree::VisibleStateVisible:
    case guitree::VisibleStateVisibleAllChildren:
    // An assembly shows nothing by itself: what is below it is what is seen.
    case guitree::VisibleStateHiddenAllChildren:
      return "[x]";
    case guitree::VisibleStateHidden:
      return "[ ]";
    case guitree::VisibleStateVisibleMixed:
    case guitree::VisibleStateHiddenMixed:
      return "[-]";
    case guitree::VisibleStateThumbnailVisible:
      return "[t]";
    case guitree::VisibleStateThumbnailHidden:
      return "[_]";
  }
  return "[?]";
}

// By the lowest bit, which for negative icons is set for the odd ones as well.
bool IsLoadedIcon(int icon)
{
  return (icon & 1) != 0;
}

std::string DescribeIcon(int icon, const RowText& text, bool ascii)
{
  const int unloaded = IsLoadedIcon(icon) ? icon - 1 : icon;
  if (unloaded == s_iconPlain) {
    return {};
  }
  if (unloaded == s_iconFailed) {
    return ShowFailure(text, ascii);
  }
  const auto* const known = std::find_if(s_iconWords.begin(), s_iconWords.end(),
                                         [unloaded](const IconWords& entry) { return entry.icon == unloaded; });
  return known != s_iconWords.end() ? known->words : "icon " + std::to_string(unloaded);
}

std::string_view GetLegend()
{
  return R"(>    selected
~    has the associated highlight
[x]  visible; of an assembly: everything below it
[ ]  hidden
[-]  mixed: something below it is visible and something is hidden
[t]  visible as a thumbnail
[_]  hidden, a thumbnail
[?]  in a state that is not known
*    has the icon of what is loaded
…    rows that are left out and can be opened; [+…] behind a name tells the same

[no shape], [body], [shape failed] and the like behind a name tell the icon of the row; the plain
one is not told. [not loaded] is a file that was not opened, [failed: FILE] one that could not be.
)";
}

}  // namespace texthost
