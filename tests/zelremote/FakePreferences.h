#pragma once

#include <map>
#include <string>
#include <variant>

#include "zelk/Preferences.h"

namespace filtertest {

/// Keeps what is set, of whatever type.
class FakePreferences : public zelk::Preferences {
public:
  using Value = std::variant<bool, int, std::string>;

  std::map<std::string, Value> values;

  bool GetBool(const du::Symbol& key, bool& value, bool* found) const override { return _Get(key, value, found); }
  bool GetInt(const du::Symbol& key, int& value, bool* found) const override { return _Get(key, value, found); }
  bool GetString(const du::Symbol& key, std::string& value, bool* found) const override
  {
    return _Get(key, value, found);
  }
  void SetBool(const du::Symbol& key, bool value) override { values[key] = value; }
  void SetInt(const du::Symbol& key, int value) override { values[key] = value; }
  void SetString(const du::Symbol& key, const std::string& value) override { values[key] = value; }

private:
  template <typename T>
  bool _Get(const du::Symbol& key, T& value, bool* found) const
  {
    const auto entry = values.find(std::string(key));
    if (found) {
      *found = entry != values.end();
    }
    const T* stored = entry == values.end() ? nullptr : std::get_if<T>(&entry->second);
    if (stored) {
      value = *stored;
    }
    return stored != nullptr;
  }
};

}  // namespace filtertest
