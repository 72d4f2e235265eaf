#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "du/SmartPtr.h"
#include "du/Task.h"
#include "memkernel/OwnerLoop.h"
#include "stepimport/Progress.h"
#include "stepimport/ReadAssembly.h"

namespace viewer {

/// Reads one file on a worker. Made and released on the owner's thread, where it tells what comes of it.
class FileReading final : public du::Task, private stepimport::Progress {
public:
  using Progressed = std::function<void(int percent, const std::string& stage)>;
  using Ended = std::function<void(stepimport::ReadResult result)>;

  /// Both are called in turns of `loop`, unless `Forget` comes before.
  FileReading(std::filesystem::path file, const du::SmartPtr<memkernel::OwnerLoop>& loop, Progressed progressed,
              Ended ended);
  FileReading(const FileReading&) = delete;
  FileReading& operator=(const FileReading&) = delete;
  ~FileReading() override;

  /// The reading ends soon, with a result that says so unless it had all by then.
  void Cancel() noexcept { m_isCancelled.store(true, std::memory_order_relaxed); }
  [[nodiscard]] bool IsCancelled() const noexcept { return m_isCancelled.load(std::memory_order_relaxed); }
  /// Nobody is told of anything any more.
  void Forget();
  [[nodiscard]] const std::filesystem::path& GetFile() const noexcept { return m_file; }

  void Run() override;
  void TaskComplete() override;
  void Abort() override;

private:
  bool Report(int percent, std::string_view stage) override;
  void _TellProgress(int percent, const std::string& stage);

  const std::filesystem::path m_file;
  const du::SmartPtr<memkernel::OwnerLoop> m_loop;
  Progressed m_progressed;
  Ended m_ended;
  std::atomic<bool> m_isCancelled{false};
  /// Of the worker.
  int m_percent = -1;
  std::string m_stage;
  stepimport::ReadResult m_result;
};

}  // namespace viewer
