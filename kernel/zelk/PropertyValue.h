#pragma once

#include <string>

#include "du/RefCounted.h"
#include "du/Symbol.h"

namespace zelk {

/// The value of one property of an instance, as it was when it was asked for; it does not change afterwards.
class PropertyValue : public virtual du::RefCounted {
public:
  /// Overwrites `out`; a value without text gives the empty symbol, whose text pointer is null.
  virtual void GetValueAsSymbol(du::Symbol& out) const = 0;
  /// Overwrites `out`; a value without text gives the empty string.
  virtual void GetValueAsString(std::string& out) const = 0;
};

}  // namespace zelk
