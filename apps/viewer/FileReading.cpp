#include "FileReading.h"

#include <exception>
#include <utility>

namespace viewer {

FileReading::FileReading(std::filesystem::path file, const du::SmartPtr<memkernel::OwnerLoop>& loop,
                         Progressed progressed, Ended ended)
    : m_file(std::move(file)), m_loop(loop), m_progressed(std::move(progressed)), m_ended(std::move(ended))
{
}

FileReading::~FileReading() = default;

void FileReading::Forget()
{
  m_progressed = {};
  m_ended = {};
}

void FileReading::Run()
{
  try {
    m_result = stepimport::ReadAssembly(m_file, this);
  } catch (const std::exception& error) {
    m_result = {};
    m_result.error = m_file.string() + ": " + error.what();
  }
}

void FileReading::TaskComplete()
{
  if (m_ended) {
    // The callee may let go of this task.
    const Ended ended = std::exchange(m_ended, {});
    ended(std::exchange(m_result, {}));
  }
}

void FileReading::Abort()
{
  m_result.cancelled = true;
  TaskComplete();
}

bool FileReading::Report(int percent, std::string_view stage)
{
  if (percent != m_percent || stage != m_stage) {
    m_percent = percent;
    m_stage = stage;
    m_loop->Invoke(
        [self = du::SmartPtr<FileReading>(this), percent, text = m_stage] { self->_TellProgress(percent, text); });
  }
  return !m_isCancelled.load(std::memory_order_relaxed);
}

void FileReading::_TellProgress(int percent, const std::string& stage)
{
  if (m_progressed) {
    m_progressed(percent, stage);
  }
}

}  // namespace viewer
