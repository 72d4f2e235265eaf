#include "StepText.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fstream>
#include <string_view>
#include <system_error>

#include "ReadProgress.h"
#include "Utf8.h"

namespace stepimport {

namespace {

constexpr std::string_view Begin = "ISO-10303-21";
constexpr std::string_view End = "END-ISO-10303-21";
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::streamsize PieceSize = 1 << 20;

/// Empty when `file` can be opened and read as a file.
std::string CheckFile(const std::filesystem::path& file)
{
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  if (status.type() == std::filesystem::file_type::not_found) {
    return "does not exist";
  }
  if (error) {
    return "cannot be read: " + error.message();
  }
  if (std::filesystem::is_directory(status)) {
    return "is a folder";
  }
  return std::filesystem::is_regular_file(status) ? "" : "is not a regular file";
}

/// Without a result `cause` tells, unless `progress` was cancelled.
std::optional<std::string> LoadBytes(const std::filesystem::path& file, ReadProgress& progress, std::string& cause)
{
  errno = 0;
  std::ifstream stream(file, std::ios::binary | std::ios::ate);
  const std::streamoff size = stream.tellg();
  if (!stream || size < 0) {
    cause = "cannot be read: " + std::generic_category().message(errno);
    return std::nullopt;
  }
  stream.seekg(0);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  for (std::streamoff at = 0; at < size; at += PieceSize) {
    stream.read(bytes.data() + at, std::min<std::streamsize>(PieceSize, size - at));
    if (!stream) {
      cause = "cannot be read to its end";
      return std::nullopt;
    }
    if (!progress.Poll()) {
      return std::nullopt;
    }
  }
  return bytes;
}

/// Leaves out blanks and comments.
std::string_view SkipToFirstWord(std::string_view text)
{
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (!text.starts_with("/*")) {
      return text;
    }
    const std::size_t end = text.find("*/", 2);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
  }
}

/// The end mark is looked for in the whole of the last stretch: signatures and blanks may follow it.
bool HasEnd(std::string_view text)
{
  constexpr std::size_t Stretch = 65536;
  return text.substr(text.size() - std::min(text.size(), Stretch)).find(End) != std::string_view::npos;
}

std::string CheckText(std::string_view text)
{
  if (text.empty()) {
    return "is empty";
  }
  if (!SkipToFirstWord(text).starts_with(Begin)) {
    return "is not a STEP file: it does not begin with " + std::string(Begin);
  }
  return HasEnd(text) ? "" : "is truncated: its end mark " + std::string(End) + " is missing";
}

}  // namespace

std::optional<StepText> LoadStepText(const std::filesystem::path& file, ReadProgress& progress, std::string& cause)
{
  cause = CheckFile(file);
  if (!cause.empty()) {
    return std::nullopt;
  }
  std::optional<std::string> bytes = LoadBytes(file, progress, cause);
  if (!bytes) {
    return std::nullopt;
  }
  if (bytes->starts_with(ByteOrderMark)) {
    bytes->erase(0, ByteOrderMark.size());
  }
  cause = CheckText(*bytes);
  if (!cause.empty()) {
    return std::nullopt;
  }
  const bool isUtf8 = IsUtf8(*bytes);
  return StepText{std::move(*bytes), isUtf8};
}

}  // namespace stepimport
