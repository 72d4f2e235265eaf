#include "memkernel/Preferences.h"

#include <charconv>
#include <fstream>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "dp/ZelTracer.h"

namespace memkernel {
namespace {

constexpr dp::ZelTracer s_tracer("memkernel", "Preferences");

std::string Escape(std::string_view text)
{
  std::string escaped;
  for (const char c : text) {
    if (c == '\n') {
      escaped += "\\n";
      continue;
    }
    if (c == '\\' || c == '=') {
      escaped += '\\';
    }
    escaped += c;
  }
  return escaped;
}

/// Nothing for a backslash at the end.
std::optional<std::string> Unescape(std::string_view text)
{
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      plain += text[i];
      continue;
    }
    if (++i == text.size()) {
      return {};
    }
    plain += text[i] == 'n' ? '\n' : text[i];
  }
  return plain;
}

std::size_t FindEqualsSign(std::string_view text)
{
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '=') {
      return i;
    }
    i += text[i] == '\\' ? 1U : 0U;
  }
  return std::string_view::npos;
}

std::optional<int> ReadInt(std::string_view text)
{
  int value = 0;
  const auto end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

std::string Write(bool value)
{
  return value ? "true" : "false";
}

std::string Write(int value)
{
  return std::to_string(value);
}

std::string Write(const std::string& value)
{
  return Escape(value);
}

const char* GetTypeName(std::size_t index)
{
  static constexpr const char* s_names[] = {"bool", "int", "string"};
  return s_names[index];
}

}  // namespace

bool Preferences::GetBool(const du::Symbol& key, bool& value, bool* found) const
{
  return _Get(key, value, found);
}

bool Preferences::GetInt(const du::Symbol& key, int& value, bool* found) const
{
  return _Get(key, value, found);
}

bool Preferences::GetString(const du::Symbol& key, std::string& value, bool* found) const
{
  return _Get(key, value, found);
}

void Preferences::SetBool(const du::Symbol& key, bool value)
{
  m_values[key] = value;
}

void Preferences::SetInt(const du::Symbol& key, int value)
{
  m_values[key] = value;
}

void Preferences::SetString(const du::Symbol& key, const std::string& value)
{
  m_values[key] = value;
}

bool Preferences::Remove(const du::Symbol& key)
{
  return m_values.erase(key) != 0;
}

bool Preferences::Load(const std::string& path)
{
  std::ifstream file(path, std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    lines.push_back(line);
  }
  if (!file.eof()) {
    return false;
  }
  for (const std::string& line : lines) {
    if (!line.empty() && !_ReadLine(line)) {
      s_tracer(dp::TraceType::Warning) << "Not understood: " << line;
    }
  }
  return true;
}

bool Preferences::Save(const std::string& path) const
{
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  for (const auto& [key, value] : m_values) {
    const std::string text = std::visit([](const auto& held) { return Write(held); }, value);
    file << GetTypeName(value.index()) << ' ' << Escape(key) << '=' << text << '\n';
  }
  file.flush();
  return file.good();
}

template <typename T>
bool Preferences::_Get(const du::Symbol& key, T& value, bool* found) const
{
  const auto entry = m_values.find(key.GetView());
  if (found) {
    *found = entry != m_values.end();
  }
  const T* stored = entry != m_values.end() ? std::get_if<T>(&entry->second) : nullptr;
  if (stored) {
    value = *stored;
  }
  return stored != nullptr;
}

bool Preferences::_ReadLine(const std::string& line)
{
  const std::string_view text = line;
  const std::size_t space = text.find(' ');
  const std::size_t equals = FindEqualsSign(text);
  if (space == std::string_view::npos || equals == std::string_view::npos || equals < space) {
    return false;
  }
  const std::string_view type = text.substr(0, space);
  const auto key = Unescape(text.substr(space + 1, equals - space - 1));
  const std::string_view written = text.substr(equals + 1);
  if (!key) {
    return false;
  }
  if (type == "bool" && (written == "true" || written == "false")) {
    m_values[*key] = written == "true";
    return true;
  }
  const auto number = ReadInt(written);
  if (type == "int" && number) {
    m_values[*key] = *number;
    return true;
  }
  auto plain = Unescape(written);
  if (type == "string" && plain) {
    m_values[*key] = *std::move(plain);
    return true;
  }
  return false;
}

}  // namespace memkernel
