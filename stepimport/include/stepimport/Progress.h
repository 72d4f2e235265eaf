#pragma once

#include <string_view>

namespace stepimport {

/// What a caller hands in to follow a long read and to stop it. It is called on the thread that called `Import`, and
/// must live until that call returns.
class Progress {
public:
  virtual ~Progress() = default;

  /// `percent` runs from 0 to 100 and never goes back; `stage` is a short text such as "Reading pump.stp", valid for
  /// the length of the call. Called many times a second; answers false to stop the import, which then ends soon and
  /// leaves nothing behind. Once it has answered false it is not called again.
  virtual bool Report(int percent, std::string_view stage) = 0;

protected:
  Progress() = default;
  Progress(const Progress&) = default;
  Progress& operator=(const Progress&) = default;
};

}  // namespace stepimport
