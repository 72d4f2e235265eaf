#pragma once

#include <QIcon>
#include <QPalette>
#include <QString>

namespace qthost {

/// An icon that is drawn anew for each size and pixel ratio, in the text colours of the palette: those of selected and
/// disabled items where it stands on one. Null where there is no drawing of that name. `isFilled` marks the drawings of
/// what is loaded.
[[nodiscard]] QIcon MakeSvgIcon(const QString& name, const QPalette& palette, bool isFilled = false);

}  // namespace qthost
