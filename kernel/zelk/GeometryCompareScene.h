#pragma once

#include "zelk/ShapeScene.h"

namespace zelk {

/// A scene in which two sets of shapes are compared. Told by class test only.
class GeometryCompareScene : public ShapeScene {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdGeometryCompareScene, "zelk::GeometryCompareScene",
                                        &ShapeScene::CLASS_TYPE};
  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
