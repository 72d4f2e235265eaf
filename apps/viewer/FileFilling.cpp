#include "FileFilling.h"

#include <utility>

namespace viewer {

namespace {

/// How many instances come or go between two looks at the clock.
constexpr std::size_t s_stepSize = 50;

}  // namespace

FileFilling::FileFilling(std::filesystem::path file, stepimport::ReadResult result, memkernel::Tree& tree,
                         const du::SmartPtr<memkernel::Instance>& parent,
                         const du::SmartPtr<memkernel::ShapeScene>& scene, Placed placed)
    : m_file(std::move(file)),
      m_result(std::move(result)),
      m_tree(&tree),
      m_scene(scene),
      m_placed(std::move(placed)),
      m_filling(m_result.assembly, m_result.shapes, tree, parent),
      m_removal(tree)
{
  m_batch.emplace(tree);
}

FileFilling::~FileFilling() = default;

bool FileFilling::GoOn(const QDeadlineTimer& end)
{
  // It would refuse what comes now. Only who runs an event loop inside of an observer gets here.
  if (m_tree->IsTellingObservers()) {
    return false;
  }
  const memkernel::ShapeSceneBatch batch(*m_scene);
  do {
    _GoOn();
  } while (!m_isDone && !end.hasExpired());
  return m_isDone;
}

void FileFilling::_GoOn()
{
  if (m_isCalledOff) {
    _RemoveSome();
  } else if (m_finder) {
    _PlaceSome();
  } else {
    _AddSome();
  }
}

void FileFilling::_AddSome()
{
  if (m_filling.GoOn(s_stepSize)) {
    return;
  }
  if (m_filling.IsRefused()) {
    CallOff();
    return;
  }
  m_finder.emplace(m_result.assembly, m_result.shapes, m_filling.GetTop());
  m_batch.reset();
}

void FileFilling::_PlaceSome()
{
  std::vector<PlacedShape> shapes = m_finder->FindSome(s_stepSize);
  std::erase_if(shapes, [this](const PlacedShape& placed) { return !m_scene->CreateShapeInstance(placed.instance); });
  m_placed(shapes);
  m_isDone = m_finder->IsDone() && !m_isCalledOff;
}

void FileFilling::_RemoveSome()
{
  m_isDone = !m_removal.GoOn(s_stepSize);
  if (m_isDone) {
    m_batch.reset();
  }
}

void FileFilling::CallOff()
{
  if (std::exchange(m_isCalledOff, true)) {
    return;
  }
  m_removal.Begin(m_filling.GetTop());
  if (!m_batch) {
    m_batch.emplace(*m_tree);
  }
}

int FileFilling::GetPercent() const noexcept
{
  const std::size_t all = 2 * m_filling.GetCount();
  const std::size_t done = m_filling.GetAddedCount() + (m_finder ? m_finder->GetVisitedCount() : 0);
  return all == 0 ? 0 : static_cast<int>(100 * done / all);
}

}  // namespace viewer
