#include "ScriptSource.h"

#include <cerrno>
#include <iostream>
#include <string_view>

#include "ErrnoText.h"

namespace {

constexpr std::string_view s_byteOrderMark = "\xEF\xBB\xBF";

bool IsStandardInput(const std::filesystem::path& file)
{
  return file == "-";
}

std::string DescribeErrno()
{
  return "cannot be read: " + GetErrnoText();
}

}  // namespace

ScriptSource::ScriptSource(const std::filesystem::path& file)
    : m_in(IsStandardInput(file) ? std::cin : m_file), m_name(IsStandardInput(file) ? "<stdin>" : file.string())
{
  if (IsStandardInput(file)) {
    return;
  }
  errno = 0;
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored)) {
    m_error = "is a folder";
    return;
  }
  m_file.open(file);
  if (!m_file) {
    m_error = DescribeErrno();
  }
}

std::optional<std::string> ScriptSource::ReadLine()
{
  std::string line;
  errno = 0;
  if (!m_error.empty() || !std::getline(m_in, line)) {
    m_error = m_error.empty() && m_in.bad() ? DescribeErrno() : m_error;
    return std::nullopt;
  }
  if (++m_lineNumber == 1 && line.starts_with(s_byteOrderMark)) {
    line.erase(0, s_byteOrderMark.size());
  }
  if (line.ends_with('\r')) {
    line.pop_back();
  }
  return line;
}
