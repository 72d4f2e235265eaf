#pragma once

#include <string>

#include "texthost/TextHost.h"

namespace texthost {

/// Three characters; blanks for no state.
[[nodiscard]] const char* GetVisibleMark(guitree::VisibleState state);

/// An icon number is even; the next odd one is the same icon for an instance that is loaded.
[[nodiscard]] bool IsLoadedIcon(int icon);

/// What the icon tells, in words, loaded or not; empty for the plain one. `text` is that of the same row.
[[nodiscard]] std::string DescribeIcon(int icon, const RowText& text, bool ascii);

}  // namespace texthost
