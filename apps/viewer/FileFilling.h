#pragma once

#include <QDeadlineTimer>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "BranchRemoval.h"
#include "PlacedShape.h"
#include "du/SmartPtr.h"
#include "memkernel/ShapeScene.h"
#include "memkernel/Tree.h"
#include "stepimport/ReadAssembly.h"
#include "stepimport/TreeFilling.h"

namespace viewer {

/// Brings what was read of one file into the tree and into the scene, a portion at a time: all of it, or nothing. All
/// portions together are one run of edits of the tree, so that whoever shows it shows it once, and whole. Owner's
/// thread.
class FileFilling {
public:
  using Placed = std::function<void(const std::vector<PlacedShape>& shapes)>;

  /// `placed` is called with what has come into the scene, portion by portion.
  FileFilling(std::filesystem::path file, stepimport::ReadResult result, memkernel::Tree& tree,
              const du::SmartPtr<memkernel::Instance>& parent, const du::SmartPtr<memkernel::ShapeScene>& scene,
              Placed placed);
  FileFilling(const FileFilling&) = delete;
  FileFilling& operator=(const FileFilling&) = delete;
  /// What is there stays.
  ~FileFilling();

  /// Goes on until `end`, by one step at least, and answers whether it has come to its end.
  [[nodiscard]] bool GoOn(const QDeadlineTimer& end);
  /// The portions to come take away what is there.
  void CallOff();
  [[nodiscard]] bool IsCalledOff() const noexcept { return m_isCalledOff; }
  /// Whether the tree does not take all of it; this is called off by itself then.
  [[nodiscard]] bool IsRefused() const noexcept { return m_filling.IsRefused(); }

  [[nodiscard]] const std::filesystem::path& GetFile() const noexcept { return m_file; }
  [[nodiscard]] const stepimport::ReadResult& GetResult() const noexcept { return m_result; }
  /// The instance that stands for the file; null before the first portion.
  [[nodiscard]] const du::SmartPtr<memkernel::Instance>& GetTop() const noexcept { return m_filling.GetTop(); }
  /// From 0 to 100; does not go back when this is called off.
  [[nodiscard]] int GetPercent() const noexcept;

private:
  void _GoOn();
  void _AddSome();
  void _PlaceSome();
  void _RemoveSome();

  const std::filesystem::path m_file;
  const stepimport::ReadResult m_result;
  const du::SmartPtr<memkernel::Tree> m_tree;
  const du::SmartPtr<memkernel::ShapeScene> m_scene;
  const Placed m_placed;
  stepimport::TreeFilling m_filling;
  std::optional<PlacedShapeFinder> m_finder;
  BranchRemoval m_removal;
  bool m_isCalledOff = false;
  bool m_isDone = false;
  /// While the tree is being edited.
  std::optional<memkernel::TreeBatch> m_batch;
};

}  // namespace viewer
