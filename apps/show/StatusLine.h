#pragma once

#include <string>
#include <string_view>

/// One line on a terminal that tells how far something has come, and is gone at the end. Written to stderr.
class StatusLine {
public:
  /// Without `isShown` nothing is written.
  explicit StatusLine(bool isShown) : m_isShown(isShown) {}
  StatusLine(const StatusLine&) = delete;
  StatusLine& operator=(const StatusLine&) = delete;
  ~StatusLine();

  /// Takes the place of what is there. A long `subject` is cut; `progress` is not.
  void Show(std::string_view subject, std::string_view progress = {});
  void Erase();

private:
  const bool m_isShown;
  std::string m_text;
};
