#pragma once

#include <string_view>

#include "StatusLine.h"
#include "stepimport/Progress.h"

/// Shows on a terminal how far reading has come, in one line that is gone at the end, and stops reading on Ctrl-C.
/// Lives as long as the reading of one file.
class ReadingLine final : public stepimport::Progress {
public:
  /// Without `isShown` nothing is written.
  explicit ReadingLine(bool isShown) : m_line(isShown) {}

  bool Report(int percent, std::string_view stage) override;

private:
  StatusLine m_line;
};
