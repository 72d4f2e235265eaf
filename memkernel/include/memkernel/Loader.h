#pragma once

#include <cstddef>
#include <unordered_map>

#include "memkernel/Shape.h"
#include "memkernel/TaskPool.h"
#include "zelloader/Loader.h"

namespace memkernel {

/// Loads shapes by their own work, on the workers of a pool and beside each other. Two loads of one shape at a time
/// share one run of the work, which goes on as long as one of them wants it.
///
/// The event completes plainly for a load that brought data, with an error and `StatusFailed` for one that did not, and
/// with an error and `StatusCanceled` for one that was cancelled or came to late.
class Loader final : public zelloader::Loader {
public:
  static constexpr unsigned short StatusFailed = 1;

  /// `pool` must outlive the loader or its `Shutdown`.
  explicit Loader(TaskPool& pool);
  ~Loader() override;

  /// See `zelloader::Loader`; false as well for a shape that is loaded, that has failed for want of work, or that is no
  /// `memkernel::Shape`.
  bool LoadShape(const du::SmartPtr<zelk::Shape>& shape, du::Flags what, zelloader::ShapeLoaderEvent* event,
                 zelk::Anchor* anchor) override;
  /// How many shapes are under way. Owner's thread. Once it is 0 the loop holds the completion of every event, or has
  /// delivered it.
  [[nodiscard]] std::size_t GetLoadCount() const noexcept { return m_loads.size(); }
  /// Cancels what is under way and accepts nothing more.
  void Shutdown();

private:
  class Load;

  void _Forget(const Load& load);

  TaskPool& m_pool;
  std::unordered_map<const Shape*, du::SmartPtr<Load>> m_loads;
  bool m_isShutDown = false;
};

}  // namespace memkernel
