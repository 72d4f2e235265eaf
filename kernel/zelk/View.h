#pragma once

#include "dg/Color.h"
#include "du/SmartPtr.h"
#include "zelk/Object.h"
#include "zelk/Scene.h"

namespace zelk {

/// A window on a scene. Owner's thread.
class View : public Object {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdView, "zelk::View", &Object::CLASS_TYPE};

  /// Overwrites `out`; null for a view without a scene.
  virtual void GetScene(du::SmartPtr<Scene>& out) const = 0;
  /// Overwrites all six, in order: whether the selection, the highlight and the associated highlight are drawn, and
  /// their colours. Callers may pass one variable several times.
  virtual void GetHighlightSettings(bool& showSelection, bool& showHighlight, bool& showAssocHighlight,
                                    dg::Color& selection, dg::Color& highlight, dg::Color& assocHighlight) = 0;

  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
