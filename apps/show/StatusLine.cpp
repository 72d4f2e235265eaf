#include "StatusLine.h"

#include <cstddef>
#include <iostream>
#include <utility>

#include "texthost/PrintableText.h"

namespace {

constexpr const char* s_startOfEmptyLine = "\r\x1B[K";
// Long enough for any name worth reading, short enough for any terminal: a line that wraps could not be taken back.
constexpr std::size_t s_maxLength = 70;

std::string Shorten(std::string text)
{
  if (text.size() <= s_maxLength) {
    return text;
  }
  std::size_t end = s_maxLength;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
    --end;
  }
  return text.substr(0, end) + "...";
}

}  // namespace

StatusLine::~StatusLine()
{
  Erase();
}

void StatusLine::Show(std::string_view subject, std::string_view progress)
{
  if (!m_isShown) {
    return;
  }
  std::string text = Shorten(texthost::MakePrintable(subject)).append(progress);
  if (text != m_text) {
    std::cerr << s_startOfEmptyLine << text << std::flush;
    m_text = std::move(text);
  }
}

void StatusLine::Erase()
{
  if (!std::exchange(m_text, {}).empty()) {
    std::cerr << s_startOfEmptyLine << std::flush;
  }
}
