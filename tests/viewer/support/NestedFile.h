#pragma once

#include <QByteArray>

namespace viewertest {

/// A STEP file of nested assemblies: each of `levels` holds `width` of the next one, and the last one as many of a
/// part, which is a small solid. All instances of a level are of one product, called `level 1` and so on from the part
/// up.
[[nodiscard]] QByteArray MakeNestedFile(int width, int levels);

}  // namespace viewertest
