#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace stepimport {

class ReadProgress;

/// The bytes of one STEP file, whole but for a byte order mark.
struct StepText {
  std::string bytes;
  /// Some text in it is written in an old code page instead of UTF-8.
  bool isUtf8 = true;
};

/// Loads `file` and makes sure that it is a STEP file with a beginning and an end. Without a result, `cause` says what
/// is wrong in words that follow a file name ("is empty"), or is empty when `progress` was cancelled.
[[nodiscard]] std::optional<StepText> LoadStepText(const std::filesystem::path& file, ReadProgress& progress,
                                                   std::string& cause);

}  // namespace stepimport
