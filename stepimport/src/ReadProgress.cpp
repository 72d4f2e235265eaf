#include "ReadProgress.h"

#include <algorithm>

namespace stepimport {

namespace {

/// The rest is the filling of the kernel.
constexpr double PercentOfFiles = 95;

}  // namespace

void ReadProgress::BeginFile(const std::filesystem::path& file, std::size_t number, std::size_t known)
{
  m_fileName = file.filename().string();
  const auto count = static_cast<double>(known);
  m_fileFrom = PercentOfFiles * static_cast<double>(number) / count;
  m_fileTo = PercentOfFiles * static_cast<double>(number + 1) / count;
}

void ReadProgress::BeginStage(const std::string& verb, double from, double to)
{
  m_stage = verb + ' ' + m_fileName;
  m_stageFrom = m_fileFrom + from * (m_fileTo - m_fileFrom);
  m_stageTo = m_fileFrom + to * (m_fileTo - m_fileFrom);
  m_stageDone = 0;
}

bool ReadProgress::Advance(double done)
{
  if (m_cancelled || m_caller == nullptr) {
    return !m_cancelled;
  }
  m_stageDone = std::clamp(done, 0.0, 1.0);
  const double percent = m_stageFrom + m_stageDone * (m_stageTo - m_stageFrom);
  m_percent = std::max(m_percent, static_cast<int>(percent));
  m_cancelled = !m_caller->Report(m_percent, m_stage);
  return !m_cancelled;
}

}  // namespace stepimport
