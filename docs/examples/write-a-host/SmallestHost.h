#pragma once

#include "guitree/GuiInterface.h"

// begin class
class SmallestHost : public guitree::GuiInterface {
public:
  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer) override { m_observer = observer; }

  void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* /*visibleMap*/,
                                   const du::HashMap<const zelk::BaseInstance*, int>* /*visibleChangeMap*/,
                                   guitree::TypeIconMap* /*typeIconMap*/,
                                   const du::HashMap<const zelk::BaseInstance*, int>* /*typeIconChangeMap*/) override
  {
  }

private:
  du::SmartPtr<SceneManagerObserver> m_observer;
};
// end class
