#pragma once

#include <functional>

#include "Event.h"

namespace systemtest {

/// The shortest run of events that can be found to fail still, by leaving out first chunks and then single events.
/// `fails` is asked again and again; `events` must fail.
inline Events Shrink(Events events, const std::function<bool(const Events&)>& fails)
{
  for (std::size_t chunk = events.size() / 2; chunk > 0;) {
    bool wasShortened = false;
    for (std::size_t begin = 0; begin < events.size();) {
      Events shorter = events;
      const auto from = shorter.begin() + static_cast<std::ptrdiff_t>(begin);
      shorter.erase(from, shorter.begin() + static_cast<std::ptrdiff_t>(std::min(begin + chunk, shorter.size())));
      if (!shorter.empty() && fails(shorter)) {
        events = shorter;
        wasShortened = true;
      } else {
        begin += chunk;
      }
    }
    chunk = wasShortened && chunk == 1 ? 1 : chunk / 2;
  }
  return events;
}

}  // namespace systemtest
