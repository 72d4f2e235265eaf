#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <vector>

#include "FileFilling.h"
#include "FileReading.h"
#include "PlacedShape.h"
#include "du/SmartPtr.h"
#include "guitree/GuiInterface.h"
#include "memkernel/ShapeScene.h"
#include "memkernel/View.h"
#include "memkernel/World.h"
#include "qthost/LoopDriver.h"

namespace viewer {

/// All files that are open: one kernel, one tree with a branch for each file, one scene of all of them and its views.
/// Files are read one after the other on a worker, and come into the tree whole or not at all, in small portions
/// between which the window answers. Lives as long as the main window; owner's thread, which is that of the window.
class Session final : public QObject {
  Q_OBJECT

public:
  using Follower = guitree::GuiInterface::SceneManagerObserver;

  Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() override;

  /// Reads these once those that were asked for before are read. A file that is open already, or is waiting, is told by
  /// `Failed`.
  void Open(const QStringList& files);
  /// What is being read ends soon, what of it is in the tree goes, and what waits is forgotten. What is open stays.
  void CancelReading();
  void CloseAll();
  /// Until what was read is in the tree and in the scene.
  [[nodiscard]] bool IsReading() const noexcept { return m_reading || m_filling; }
  /// Whether a file that was read is on its way into the tree and the scene.
  [[nodiscard]] bool IsFilling() const noexcept { return static_cast<bool>(m_filling); }
  [[nodiscard]] QStringList GetOpenFiles() const;
  /// The instance that stands for an open file, by the name that `Opened` tells; null for any other.
  [[nodiscard]] du::SmartPtr<memkernel::Instance> FindFile(const QString& file) const;
  /// The instance above all files. Lives as long as the session.
  [[nodiscard]] const du::SmartPtr<memkernel::Instance>& GetRoot() const noexcept { return m_root; }

  [[nodiscard]] const du::SmartPtr<memkernel::World>& GetWorld() const noexcept { return m_world; }
  [[nodiscard]] const du::SmartPtr<memkernel::ShapeScene>& GetScene() const noexcept { return m_scene; }

  /// A view of the scene; the first one is active at once.
  [[nodiscard]] du::SmartPtr<memkernel::ShapeView> AddView();
  void RemoveView(const du::SmartPtr<memkernel::ShapeView>& view);
  void ActivateView(const du::SmartPtr<memkernel::ShapeView>& view);
  [[nodiscard]] const du::SmartPtr<memkernel::ShapeView>& GetActiveView() const noexcept { return m_activeView; }
  /// Tells `follower` of the scene and of the active view, and of all changes from now on. Null for nobody.
  void SetFollower(const du::SmartPtr<Follower>& follower);

Q_SIGNALS:
  void ReadingBegan(const QString& file, qsizetype waiting);
  void ReadingProgressed(int percent, const QString& stage);
  /// Nothing is being read and nothing waits.
  void ReadingEnded();
  /// These are in the tree and in the scene, with others of the file to come. They go again if it is called off.
  void Placed(const std::vector<viewer::PlacedShape>& shapes);
  /// All of the file is in the tree and in the scene.
  void Opened(const QString& file);
  /// File and cause. What is open is as it was.
  void Failed(const QString& message);
  void Warned(const QStringList& messages);
  void Closed();

private:
  void _ReadNext();
  void _OnRead(stepimport::ReadResult result);
  void _BeginFilling(const std::filesystem::path& file, stepimport::ReadResult result);
  void _FillSome();
  void _EndFilling();
  void _TellRefused(const FileFilling& filling);
  void _Warn(const std::vector<std::string>& warnings);
  void _TellProgress(int percent, const QString& stage);
  /// After the end of one file.
  void _GoOn();
  [[nodiscard]] bool _IsKnown(const std::filesystem::path& file) const;

  const du::SmartPtr<memkernel::World> m_world;
  /// Ends after the world has shut down, when nobody posts any more.
  qthost::LoopDriver m_driver;
  const memkernel::TaskPool::Lane m_readingLane;
  const du::SmartPtr<memkernel::ShapeScene> m_scene;
  du::SmartPtr<memkernel::Instance> m_root;
  std::map<std::filesystem::path, du::SmartPtr<memkernel::Instance>> m_files;
  std::deque<std::filesystem::path> m_waiting;
  du::SmartPtr<FileReading> m_reading;
  std::unique_ptr<FileFilling> m_filling;
  QTimer m_fillingDue;
  int m_percent = 0;
  std::vector<du::SmartPtr<memkernel::ShapeView>> m_views;
  du::SmartPtr<memkernel::ShapeView> m_activeView;
  du::SmartPtr<Follower> m_follower;
};

}  // namespace viewer
