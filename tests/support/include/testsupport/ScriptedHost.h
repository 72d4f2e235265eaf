#pragma once

#include <functional>
#include <list>

#include "guitree/GuiInterface.h"

namespace testsupport {

/// A host that answers what its members say, and starts with the answers of `guitree::GuiInterface`.
class ScriptedHost : public guitree::GuiInterface {
public:
  bool isTreeVisibleInUI = true;
  bool isValidView = true;
  bool checkPropsLoaded = true;
  bool checkAndUpdateNodeNameAndType = false;
  bool setAssocHlight = false;
  bool hasTypeIconChangedOnShapeInstanceRemove = false;
  bool isShowingAltPartNames = false;
  du::Symbol viewTypeString = "Unknown";
  /// Not owned.
  std::list<zelk::BaseInstance*>* nonFilteredInsts1 = nullptr;
  std::list<zelk::BaseInstance*>* nonFilteredInsts2 = nullptr;
  du::SmartPtr<zelk::ProgressCtrl> filterProgressCtrl;
  du::SmartPtr<zelk::View> cs3DView;
  du::SmartPtr<zelk::View> csSchView;
  /// What the last `SetSceneManagerObserver` brought.
  du::SmartPtr<SceneManagerObserver> sceneManagerObserver;
  /// Runs inside `SetSceneManagerObserver`, with the new observer in place.
  std::function<void()> onSceneManagerObserver;

  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer) override
  {
    sceneManagerObserver = observer;
    if (onSceneManagerObserver) {
      onSceneManagerObserver();
    }
  }
  void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* /*visibleMap*/,
                                   const du::HashMap<const zelk::BaseInstance*, int>* /*visibleChangeMap*/,
                                   guitree::TypeIconMap* /*typeIconMap*/,
                                   const du::HashMap<const zelk::BaseInstance*, int>* /*typeIconChangeMap*/) override
  {
  }
  bool CheckPropsLoaded() override { return checkPropsLoaded; }
  bool CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) override
  {
    return checkAndUpdateNodeNameAndType;
  }
  bool SetAssocHlight(zelk::BaseInstance* /*instance*/, bool /*on*/) override { return setAssocHlight; }
  bool HasTypeIconChangedOnShapeInstanceRemove(guitree::SceneInfoLog* /*log*/,
                                               const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/) override
  {
    return hasTypeIconChangedOnShapeInstanceRemove;
  }
  std::list<zelk::BaseInstance*>* GetNonFilteredInsts1() override { return nonFilteredInsts1; }
  std::list<zelk::BaseInstance*>* GetNonFilteredInsts2() override { return nonFilteredInsts2; }
  [[nodiscard]] du::Symbol GetViewTypeString(const du::SmartPtr<zelk::View>& /*view*/) const override
  {
    return viewTypeString;
  }
  [[nodiscard]] bool IsTreeVisibleInUI() const override { return isTreeVisibleInUI; }
  du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& /*event*/) override
  {
    return filterProgressCtrl;
  }
  [[nodiscard]] bool IsShowingAltPartNames() const override { return isShowingAltPartNames; }
  bool IsValidView(const du::SmartPtr<zelk::View>& /*view*/) override { return isValidView; }
  [[nodiscard]] du::SmartPtr<zelk::View> GetCS3DView() const override { return cs3DView; }
  [[nodiscard]] du::SmartPtr<zelk::View> GetCSSchView() const override { return csSchView; }
};

}  // namespace testsupport
