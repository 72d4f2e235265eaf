#include "FileFinder.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <system_error>

namespace stepimport {

namespace {

/// Only ASCII letters: which other letters a foreign file system takes for the same is not known here.
std::string ToLower(std::string text)
{
  std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return text;
}

std::filesystem::path ToLocalPath(std::string target)
{
  constexpr std::string_view FileScheme = "file://";
  if (ToLower(target).starts_with(FileScheme)) {
    target.erase(0, FileScheme.size());
  }
  std::replace(target.begin(), target.end(), '\\', '/');
  return target;
}

bool IsFile(const std::filesystem::path& path)
{
  std::error_code ignored;
  return std::filesystem::is_regular_file(path, ignored);
}

}  // namespace

std::optional<std::filesystem::path> FileFinder::Find(const std::filesystem::path& referrer, const std::string& target)
{
  const std::filesystem::path local = ToLocalPath(target);
  const std::filesystem::path folder = referrer.parent_path();
  const std::filesystem::path start = local.is_absolute() ? local.root_path() : folder;
  if (std::optional<std::filesystem::path> found = _FindBelow(start, local.relative_path())) {
    return found;
  }
  return _FindBelow(folder, local.filename());
}

std::optional<std::filesystem::path> FileFinder::_FindBelow(const std::filesystem::path& folder,
                                                            const std::filesystem::path& target)
{
  if (target.empty()) {
    return std::nullopt;
  }
  if (IsFile(folder / target)) {
    return folder / target;
  }
  std::filesystem::path at = folder;
  for (const std::filesystem::path& part : target) {
    const std::optional<std::filesystem::path> next = _FindIn(at, part.string());
    if (!next) {
      return std::nullopt;
    }
    at = *next;
  }
  return IsFile(at) ? std::optional(at) : std::nullopt;
}

std::optional<std::filesystem::path> FileFinder::_FindIn(const std::filesystem::path& folder, const std::string& name)
{
  if (name == "." || name == "..") {
    return folder / name;
  }
  const auto [first, last] = _GetNames(folder).equal_range(ToLower(name));
  if (first == last) {
    return std::nullopt;
  }
  std::set<std::string> candidates;
  std::transform(first, last, std::inserter(candidates, candidates.end()),
                 [](const auto& entry) { return entry.second; });
  // Which of several names is meant cannot be told; the same one is taken on every machine.
  return folder / (candidates.contains(name) ? name : *candidates.begin());
}

const FileFinder::FolderNames& FileFinder::_GetNames(const std::filesystem::path& folder)
{
  const auto [place, isNew] = m_folders.try_emplace(folder);
  if (isNew) {
    std::error_code error;
    std::filesystem::directory_iterator entry(folder.empty() ? std::filesystem::path(".") : folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
      const std::string name = entry->path().filename().string();
      place->second.emplace(ToLower(name), name);
    }
  }
  return place->second;
}

}  // namespace stepimport
