#pragma once

#include "du/Flags.h"
#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "zelk/Anchor.h"
#include "zelk/Shape.h"
#include "zelloader/ShapeLoaderEvent.h"

namespace zelloader {

/// Brings the data of shapes. A kernel derives from it and installs one object for the process. Owner's thread, unless
/// an operation says otherwise.
class Loader : public virtual du::RefCounted {
public:
  /// What `LoadShape` is asked for: the geometry that is drawn.
  static constexpr unsigned int LoadGeometry = 1;

  /// The installed loader; null while no kernel runs. Any thread.
  [[nodiscard]] static du::SmartPtr<Loader> GetLoader();
  /// Makes `loader` the one that `GetLoader` answers, in place of any other; null removes it. The process holds a
  /// reference until then.
  static void Install(const du::SmartPtr<Loader>& loader);

  /// Begins to load and returns. `event`, which must be managed and not null, is completed in every case, also when the
  /// answer is false because there is nothing to load or the loader has ended; the shape's data status is set by then.
  /// `anchor` may be null.
  virtual bool LoadShape(const du::SmartPtr<zelk::Shape>& shape, du::Flags what, ShapeLoaderEvent* event,
                         zelk::Anchor* anchor) = 0;
};

}  // namespace zelloader
