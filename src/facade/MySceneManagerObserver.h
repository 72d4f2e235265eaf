#pragma once

#include "guitree/GuiInterface.h"

namespace guitree {

class GuiTree;

/// The library's side of the scene and view reports of a host. The host may keep it for as long as it likes; the
/// `GuiTree` clears the back pointer when it is done with it.
class MySceneManagerObserver : public GuiInterface::SceneManagerObserver {
public:
  explicit MySceneManagerObserver(GuiTree* tree) : guiTree(tree) {}

  GuiTree* guiTree;
};

}  // namespace guitree
