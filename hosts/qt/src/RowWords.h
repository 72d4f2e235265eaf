#pragma once

#include <QString>

#include "zelk/BaseInstance.h"

namespace qthost {

/// What a row is called: the property "Display Name", else the name of the object, else "(unnamed)".
[[nodiscard]] QString ReadRowName(const zelk::BaseInstance& instance);

/// The text of a property; empty without one.
[[nodiscard]] QString ReadProperty(const zelk::BaseInstance& instance, const du::Symbol& group, const du::Symbol& name);

/// Empty for a plain icon. The loaded form of an icon has the words of the other.
[[nodiscard]] QString DescribeIcon(int icon);

/// Empty for `guitree::VisibleStateNone`.
[[nodiscard]] QString DescribeState(int state);

}  // namespace qthost
