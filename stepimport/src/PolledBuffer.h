#pragma once

#include <cstddef>
#include <streambuf>
#include <string>

namespace stepimport {

class ReadProgress;

/// Gives a reader the bytes of a file piece by piece, reports how far it has come, and ends the file early once the
/// import was cancelled. The bytes and the progress outlive it.
class PolledBuffer : public std::streambuf {
public:
  PolledBuffer(std::string& bytes, ReadProgress& progress) : m_bytes(bytes), m_progress(progress) {}

protected:
  int_type underflow() override;

private:
  std::string& m_bytes;
  ReadProgress& m_progress;
  std::size_t m_given = 0;
};

}  // namespace stepimport
