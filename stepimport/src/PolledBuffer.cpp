#include "PolledBuffer.h"

#include <algorithm>

#include "ReadProgress.h"

namespace stepimport {

namespace {

constexpr std::size_t PieceSize = 65536;

}  // namespace

PolledBuffer::int_type PolledBuffer::underflow()
{
  const double done = m_bytes.empty() ? 1 : static_cast<double>(m_given) / static_cast<double>(m_bytes.size());
  if (m_given == m_bytes.size() || !m_progress.Advance(done)) {
    return traits_type::eof();
  }
  const std::size_t size = std::min(PieceSize, m_bytes.size() - m_given);
  char* const piece = m_bytes.data() + m_given;
  setg(piece, piece, piece + size);
  m_given += size;
  return traits_type::to_int_type(*piece);
}

}  // namespace stepimport
