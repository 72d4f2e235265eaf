#pragma once

#include "du/SmartPtr.h"
#include "zelk/ShapeScene.h"
#include "zelk/ShapeSceneObserver.h"

namespace guitree {

class GuiTree;

/// Listens to one shape scene for a `GuiTree`, which clears the back pointer when it is done with the scene.
class ShapeSceneObserver : public zelk::ShapeSceneObserver {
public:
  explicit ShapeSceneObserver(GuiTree* tree) : guiTree(tree) {}

  GuiTree* guiTree;
  du::SmartPtr<zelk::ShapeScene> scene;
};

}  // namespace guitree
