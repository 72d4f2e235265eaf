#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "stepimport/Progress.h"

namespace stepimport {

/// Spreads the percents of one import over its files and stages, and remembers that the caller has had enough. Lives
/// for one import, on its thread.
class ReadProgress {
public:
  /// `caller` may be null: nobody listens, nobody stops.
  explicit ReadProgress(Progress* caller) : m_caller(caller) {}

  /// The next of `known` files, counted from 0, is about to be read. More may become known later: the percents then
  /// stand still until the work has caught up with them.
  void BeginFile(const std::filesystem::path& file, std::size_t number, std::size_t known);

  /// A part of the work on the current file: it begins and ends at these fractions of it.
  void BeginStage(const std::string& verb, double from, double to);

  /// `done` is the fraction of the current stage. Answers whether to go on.
  bool Advance(double done);

  /// Tells nothing new, but lets the caller stop. Answers whether to go on.
  bool Poll() { return Advance(m_stageDone); }

  [[nodiscard]] bool IsCancelled() const { return m_cancelled; }

private:
  Progress* m_caller;
  std::string m_fileName;
  std::string m_stage;
  double m_fileFrom = 0;
  double m_fileTo = 0;
  double m_stageFrom = 0;
  double m_stageTo = 0;
  double m_stageDone = 0;
  int m_percent = 0;
  bool m_cancelled = false;
};

}  // namespace stepimport
