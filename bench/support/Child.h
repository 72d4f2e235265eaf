#pragma once

#include <functional>
#include <map>
#include <string>

namespace bench {

/// Figures by name.
using Figures = std::map<std::string, double>;

/// Runs `measure` in a process of its own and returns its figures. What was measured before has left a heap of another
/// form, and that alone can double a time; each measurement starts from the same one. Throws if the process fails,
/// after it has told why.
[[nodiscard]] Figures MeasureInChild(const std::function<Figures()>& measure);

}  // namespace bench
