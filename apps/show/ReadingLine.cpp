#include "ReadingLine.h"

#include <string>

#include "Interrupt.h"

bool ReadingLine::Report(int percent, std::string_view stage)
{
  m_line.Show(stage, ' ' + std::to_string(percent) + '%');
  return !InterruptScope::WasInterrupted();
}
