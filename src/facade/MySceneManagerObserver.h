#pragma once

#include "guitree/GuiInterface.h"

namespace guitree {

class GuiTree;

/// The library's side of the scene and view reports of a host. The host may keep it for as long as it likes; the
/// `GuiTree` clears the back pointer when it is done with it.
class MySceneManagerObserver : public GuiInterface::SceneManagerObserver {
public:
  explicit MySceneManagerObserver(GuiTree* tree) : guiTree(tree) {}

  void OnActiveViewChanged(const du::SmartPtr<zelk::View>& view) override;
  void OnSceneRemoved(const du::SmartPtr<zelk::Scene>& scene) override;
  void OnSceneAdded(const du::SmartPtr<zelk::Scene>& scene) override;
  void OnViewRemoved(const du::SmartPtr<zelk::View>& view) override;

  GuiTree* guiTree;
};

}  // namespace guitree
