#pragma once

#include "du/SmartPtr.h"
#include "zelk/BaseInstance.h"

namespace guitree {

/// The order of instances by their two keys: the texts of the first keys byte by byte, without case folding or locale,
/// and among equal ones the addresses of the interned second keys. It is the same for the life of the process and means
/// nothing beyond it. A null instance has null keys. Any thread that may read the instances.
struct InstsComperator {
  [[nodiscard]] bool operator()(const du::SmartPtr<zelk::BaseInstance>& a,
                                const du::SmartPtr<zelk::BaseInstance>& b) const;
};

}  // namespace guitree
