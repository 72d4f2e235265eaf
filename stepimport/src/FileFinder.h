#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>

namespace stepimport {

/// Finds the files that other files refer to. It lists each folder at most once, so one finder serves one import.
class FileFinder {
public:
  /// The regular file that `referrer` means by `target`, looked for from the folder of `referrer`. Files come from
  /// other machines, so backslashes count as slashes, a wrong case is forgiven where there is no exact match, and a
  /// path that leads nowhere is tried by its last part beside `referrer`.
  [[nodiscard]] std::optional<std::filesystem::path> Find(const std::filesystem::path& referrer,
                                                          const std::string& target);

private:
  /// From lower case to the real names.
  using FolderNames = std::unordered_multimap<std::string, std::string>;

  [[nodiscard]] std::optional<std::filesystem::path> _FindBelow(const std::filesystem::path& folder,
                                                                const std::filesystem::path& target);
  [[nodiscard]] std::optional<std::filesystem::path> _FindIn(const std::filesystem::path& folder,
                                                             const std::string& name);
  [[nodiscard]] const FolderNames& _GetNames(const std::filesystem::path& folder);

  std::map<std::filesystem::path, FolderNames> m_folders;
};

}  // namespace stepimport
