#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace stepimporttest {

/// An empty folder of its own that goes away with the object.
class TempFolder {
public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& GetPath() const { return m_path; }

  /// Writes the bytes as they are and makes the folders on the way.
  std::filesystem::path Write(const std::string& name, std::string_view bytes) const;

private:
  std::filesystem::path m_path;
};

/// The bytes of a file as they are.
[[nodiscard]] std::string LoadBytes(const std::filesystem::path& file);

}  // namespace stepimporttest
