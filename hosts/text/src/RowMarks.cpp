#include "RowMarks.h"

#include <algorithm>
#include <array>

#include "RowName.h"
#include "guitree/TypeIcon.h"

namespace texthost {

namespace {

struct IconWords {
  int icon;
  const char* words;
};

constexpr std::array s_iconWords{
    IconWords{guitree::IconNoSource, "no shape"},
    IconWords{guitree::IconProxy, "not loaded"},
    IconWords{guitree::IconProxyNoShapeSource, "proxy, no shape"},
    IconWords{guitree::IconProxyShape, "proxy"},
    IconWords{guitree::IconProxyRejectedCopyrights, "proxy, copyrights rejected"},
    IconWords{guitree::IconProxyShapeFailed, "proxy, shape failed"},
    IconWords{guitree::IconThumbnail, "thumbnail"},
    IconWords{guitree::IconThumbnailOnly, "thumbnail only"},
    IconWords{guitree::IconComparedFirst, "compared, first"},
    IconWords{guitree::IconComparedOther, "compared"},
    IconWords{guitree::IconShapeFailed, "shape failed"},
    IconWords{guitree::IconRejectedCopyrights, "copyrights rejected"},
    IconWords{guitree::IconCollapsedSibling, "collapsed"},
    IconWords{guitree::IconCollapsedSiblingNoSource, "collapsed, no shape"},
    IconWords{guitree::IconCollapsedSiblingThumbnail, "collapsed, thumbnail"},
    IconWords{guitree::IconCollapsedSiblingThumbnailOnly, "collapsed, thumbnail only"},
    IconWords{guitree::IconCollapsedSiblingFailed, "collapsed, shape failed"},
    IconWords{guitree::IconCollapsedSiblingRejectedCopyrights, "collapsed, copyrights rejected"},
    IconWords{guitree::IconBody, "body"},
    IconWords{guitree::IconConstructionBody, "construction body"},
    IconWords{guitree::IconBodyNoShapeSource, "body, no shape"},
    IconWords{guitree::IconBodyFailed, "body, shape failed"},
    IconWords{guitree::IconConstructionBodyFailed, "construction body, shape failed"},
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
  if (unloaded == guitree::IconPlain) {
    return {};
  }
  if (unloaded == guitree::IconProxyExpandFailed) {
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
[collapsed] stands for all its equal siblings.
)";
}

}  // namespace texthost
