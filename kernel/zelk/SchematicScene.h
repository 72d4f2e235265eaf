#pragma once

#include "zelk/Scene.h"

namespace zelk {

/// A scene of drawings. Told by class test only.
class SchematicScene : public Scene {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdSchematicScene, "zelk::SchematicScene", &Scene::CLASS_TYPE};
  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
