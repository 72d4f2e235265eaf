#include "ReadingLine.h"

#include <iostream>

#include "Interrupt.h"
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

ReadingLine::~ReadingLine()
{
  if (!m_shown.empty()) {
    std::cerr << s_startOfEmptyLine << std::flush;
  }
}

bool ReadingLine::Report(int percent, std::string_view stage)
{
  if (m_isShown) {
    std::string line = Shorten(texthost::MakePrintable(stage)) + ' ' + std::to_string(percent) + '%';
    if (line != m_shown) {
      std::cerr << s_startOfEmptyLine << line << std::flush;
      m_shown = std::move(line);
    }
  }
  return !InterruptScope::WasInterrupted();
}
