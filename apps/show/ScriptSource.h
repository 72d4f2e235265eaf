#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <istream>
#include <optional>
#include <string>

/// The lines of a script file, or of the standard input, which are read one by one when they are asked for. Owner's
/// thread.
class ScriptSource {
public:
  /// `-` stands for the standard input.
  explicit ScriptSource(const std::filesystem::path& file);

  /// Why the script cannot be read, or could not be read to its end; empty while all is well.
  [[nodiscard]] const std::string& GetError() const noexcept { return m_error; }
  /// The next line, without its end; nothing after the last one.
  [[nodiscard]] std::optional<std::string> ReadLine();
  /// As in messages.
  [[nodiscard]] const std::string& GetName() const noexcept { return m_name; }
  /// That of the line that was read last, counted from 1.
  [[nodiscard]] std::size_t GetLineNumber() const noexcept { return m_lineNumber; }

private:
  std::ifstream m_file;
  std::istream& m_in;
  const std::string m_name;
  std::string m_error;
  std::size_t m_lineNumber = 0;
};
