#pragma once

#include <algorithm>
#include <vector>

#include <QModelIndex>

namespace qthost {

/// Where a row stands, from the top: the order of these is that of the rows in a view.
[[nodiscard]] inline std::vector<int> GetPlace(QModelIndex index)
{
  std::vector<int> place;
  for (; index.isValid(); index = index.parent()) {
    place.push_back(index.row());
  }
  std::reverse(place.begin(), place.end());
  return place;
}

}  // namespace qthost
