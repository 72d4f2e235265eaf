#pragma once

#include <string>

#include "du/RefCounted.h"
#include "du/Symbol.h"

namespace zelk {

/// Stored settings, told by key. Owner's thread.
class Preferences : public virtual du::RefCounted {
public:
  /// Each getter overwrites `value` and answers true when the key is stored and its value is of the type; otherwise
  /// `value` keeps what the caller put there as a default and the answer is false. `found`, which may be null, tells
  /// whether the key is stored at all.
  virtual bool GetBool(const du::Symbol& key, bool& value, bool* found) const = 0;
  virtual bool GetInt(const du::Symbol& key, int& value, bool* found) const = 0;
  virtual bool GetString(const du::Symbol& key, std::string& value, bool* found) const = 0;

  virtual void SetBool(const du::Symbol& key, bool value) = 0;
  virtual void SetInt(const du::Symbol& key, int value) = 0;
  virtual void SetString(const du::Symbol& key, const std::string& value) = 0;
};

}  // namespace zelk
