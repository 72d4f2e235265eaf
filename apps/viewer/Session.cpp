#include "Session.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "memkernel/InstanceFlags.h"
#include "stepimport/Import.h"

namespace viewer {

namespace {

/// As long as nobody notices that the window does not answer.
constexpr int s_portionMs = 10;
/// In percent of the whole way of a file; what is left is the share of the tree and the scene.
constexpr int s_readingShare = 80;

/// Reading takes one worker for as long as it lasts; loads and filters must go on beside it.
unsigned int ChooseWorkers()
{
  return std::clamp(std::thread::hardware_concurrency() + 1, 3U, 8U);
}

std::filesystem::path ToPath(const QString& file)
{
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(file.toStdString(), error);
  const std::filesystem::path canonical = std::filesystem::weakly_canonical(path, error);
  return error ? path : canonical;
}

QString ToText(const std::filesystem::path& file)
{
  return QString::fromStdString(file.string());
}

}  // namespace

Session::Session()
    : m_world(du::MakeSmart<memkernel::World>(ChooseWorkers())),
      m_driver([loop = m_world->GetLoopPtr()] { loop->RunDue(); }),
      m_readingLane(m_world->GetMemTaskPool().CreateLane()),
      m_scene(m_world->CreateShapeScene(m_world->selectionManager))
{
  m_world->GetLoop().SetWakeUp(m_driver.MakeWakeUp());
  m_world->InstallForProcess();
  memkernel::Tree& tree = m_world->GetMemTree();
  m_root = tree.CreateRoot(tree.CreateProduct({.name = "Files", .flags = memkernel::InstancePlainIcon}));
  connect(&m_fillingDue, &QTimer::timeout, this, &Session::_FillSome);
}

Session::~Session()
{
  if (m_reading) {
    m_reading->Forget();
    m_reading->Cancel();
  }
  m_filling.reset();
  m_follower.Reset();
  m_world->Shutdown();
}

void Session::Open(const QStringList& files)
{
  for (const QString& file : files) {
    const std::filesystem::path path = ToPath(file);
    if (_IsKnown(path)) {
      Q_EMIT Failed(tr("%1: is open already").arg(ToText(path)));
    } else {
      m_waiting.push_back(path);
    }
  }
  if (!IsReading()) {
    _ReadNext();
  }
}

bool Session::_IsKnown(const std::filesystem::path& file) const
{
  return m_files.contains(file) || (m_reading && m_reading->GetFile() == file)
         || (m_filling && !m_filling->IsCalledOff() && m_filling->GetFile() == file)
         || std::find(m_waiting.begin(), m_waiting.end(), file) != m_waiting.end();
}

void Session::_ReadNext()
{
  if (m_waiting.empty()) {
    return;
  }
  const std::filesystem::path file = m_waiting.front();
  m_waiting.pop_front();
  m_percent = 0;
  m_reading = du::MakeSmart<FileReading>(
      file, m_world->GetLoopPtr(),
      [this](int percent, const std::string& stage) {
        _TellProgress(percent * s_readingShare / 100, QString::fromStdString(stage));
      },
      [this](stepimport::ReadResult result) { _OnRead(std::move(result)); });
  Q_EMIT ReadingBegan(ToText(file), static_cast<qsizetype>(m_waiting.size()));
  m_world->GetMemTaskPool().InsertTaskInLane(m_reading, m_readingLane);
}

void Session::CancelReading()
{
  m_waiting.clear();
  if (m_reading) {
    m_reading->Cancel();
  }
  if (m_filling) {
    m_filling->CallOff();
  }
}

void Session::_OnRead(stepimport::ReadResult result)
{
  const du::SmartPtr<FileReading> reading = std::exchange(m_reading, {});
  // The reader may have been done already when it was called off.
  const bool isCalledOff = result.cancelled || reading->IsCancelled();
  if (result.ok && !isCalledOff) {
    _BeginFilling(reading->GetFile(), std::move(result));
    return;
  }
  if (!isCalledOff) {
    Q_EMIT Failed(QString::fromStdString(result.error));
  }
  _GoOn();
}

void Session::_BeginFilling(const std::filesystem::path& file, stepimport::ReadResult result)
{
  m_filling = std::make_unique<FileFilling>(file, std::move(result), m_world->GetMemTree(), m_root, m_scene,
                                            [this](const std::vector<PlacedShape>& shapes) { Q_EMIT Placed(shapes); });
  m_fillingDue.start();
}

void Session::_FillSome()
{
  if (m_filling->GoOn(QDeadlineTimer(s_portionMs))) {
    _EndFilling();
  } else if (!m_filling->IsCalledOff()) {
    _TellProgress(s_readingShare + m_filling->GetPercent() * (100 - s_readingShare) / 100, tr("Adding to the tree"));
  }
}

void Session::_EndFilling()
{
  m_fillingDue.stop();
  const std::unique_ptr<FileFilling> filling = std::move(m_filling);
  if (!filling->IsCalledOff()) {
    m_files.emplace(filling->GetFile(), filling->GetTop());
    Q_EMIT Opened(ToText(filling->GetFile()));
    _Warn(filling->GetResult().warnings);
  } else if (filling->IsRefused()) {
    _TellRefused(*filling);
  }
  _GoOn();
}

void Session::_TellRefused(const FileFilling& filling)
{
  const QString file = ToText(filling.GetFile());
  if (stepimport::CountInstances(filling.GetResult().assembly) > stepimport::MaxInstances) {
    Q_EMIT Failed(tr("%1: unfolds to more than %L2 parts").arg(file).arg(stepimport::MaxInstances));
  } else {
    Q_EMIT Failed(tr("%1: cannot be added to the tree").arg(file));
  }
}

void Session::_Warn(const std::vector<std::string>& warnings)
{
  if (warnings.empty()) {
    return;
  }
  QStringList messages;
  for (const std::string& warning : warnings) {
    messages += QString::fromStdString(warning);
  }
  Q_EMIT Warned(messages);
}

// Most portions do not get as far as the next percent.
void Session::_TellProgress(int percent, const QString& stage)
{
  if (std::exchange(m_percent, percent) != percent) {
    Q_EMIT ReadingProgressed(percent, stage);
  }
}

void Session::_GoOn()
{
  // Who was told of a file may have begun another one.
  if (!IsReading()) {
    _ReadNext();
  }
  if (!IsReading()) {
    Q_EMIT ReadingEnded();
  }
}

void Session::CloseAll()
{
  CancelReading();
  {
    const memkernel::TreeBatch batch(m_world->GetMemTree());
    for (const auto& [file, top] : m_files) {
      m_world->GetMemTree().Remove(top);
    }
  }
  m_files.clear();
  Q_EMIT Closed();
}

QStringList Session::GetOpenFiles() const
{
  QStringList files;
  for (const auto& [file, top] : m_files) {
    files += ToText(file);
  }
  return files;
}

du::SmartPtr<memkernel::Instance> Session::FindFile(const QString& file) const
{
  const auto found = m_files.find(file.toStdString());
  return found == m_files.end() ? nullptr : found->second;
}

du::SmartPtr<memkernel::ShapeView> Session::AddView()
{
  auto view = du::MakeSmart<memkernel::ShapeView>(m_scene);
  m_views.push_back(view);
  if (m_views.size() == 1) {
    ActivateView(view);
  }
  return view;
}

void Session::RemoveView(const du::SmartPtr<memkernel::ShapeView>& view)
{
  if (std::erase(m_views, view) == 0) {
    return;
  }
  if (view == m_activeView) {
    ActivateView(m_views.empty() ? nullptr : m_views.front());
  }
  if (m_follower) {
    m_follower->OnViewRemoved(view);
  }
}

void Session::ActivateView(const du::SmartPtr<memkernel::ShapeView>& view)
{
  if (view == m_activeView) {
    return;
  }
  m_activeView = view;
  if (m_follower) {
    m_follower->OnActiveViewChanged(view);
  }
}

void Session::SetFollower(const du::SmartPtr<Follower>& follower)
{
  m_follower = follower;
  if (m_follower) {
    m_follower->OnSceneAdded(m_scene);
    m_follower->OnActiveViewChanged(m_activeView);
  }
}

}  // namespace viewer
