#pragma once

#include <map>
#include <string>
#include <variant>

#include "zelk/Preferences.h"

namespace memkernel {

/// Settings in memory, which can be written to a file and read back. Owner's thread.
class Preferences final : public zelk::Preferences {
public:
  bool GetBool(const du::Symbol& key, bool& value, bool* found) const override;
  bool GetInt(const du::Symbol& key, int& value, bool* found) const override;
  bool GetString(const du::Symbol& key, std::string& value, bool* found) const override;
  void SetBool(const du::Symbol& key, bool value) override;
  void SetInt(const du::Symbol& key, int value) override;
  void SetString(const du::Symbol& key, const std::string& value) override;
  /// False if the key is not stored.
  bool Remove(const du::Symbol& key);

  /// Adds what the file holds, over what is stored. Lines that are not understood are passed over with a trace. False,
  /// and nothing changed, if the file cannot be read.
  bool Load(const std::string& path);
  /// One line a key, ordered by key: `bool Some key=true`, with `\n`, `\=` and `\\` for a line break, an equals sign
  /// and a backslash. False if the file cannot be written.
  [[nodiscard]] bool Save(const std::string& path) const;

private:
  using Value = std::variant<bool, int, std::string>;

  template <typename T>
  bool _Get(const du::Symbol& key, T& value, bool* found) const;
  bool _ReadLine(const std::string& line);

  std::map<std::string, Value, std::less<>> m_values;
};

}  // namespace memkernel
