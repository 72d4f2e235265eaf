#pragma once

#include <memory>

#include <QAbstractItemModel>

#include "zelk/BaseTree.h"

namespace bench {

/// A lean model of the names of a tree, in the order of a walk.
[[nodiscard]] std::unique_ptr<QAbstractItemModel> MakeLeanModel(const zelk::BaseTree& tree);

}  // namespace bench
