#include "facade/MySceneManagerObserver.h"

#include "facade/LiveGuiTree.h"

namespace guitree {

void MySceneManagerObserver::OnActiveViewChanged(const du::SmartPtr<zelk::View>& view)
{
  const Pin self(this);
  if (const LiveGuiTree tree(guiTree); tree) {
    tree->OnActiveViewChanged(view);
  }
}

void MySceneManagerObserver::OnSceneRemoved(const du::SmartPtr<zelk::Scene>& scene)
{
  const Pin self(this);
  if (const LiveGuiTree tree(guiTree); tree) {
    tree->OnSceneRemoved(scene);
  }
}

void MySceneManagerObserver::OnSceneAdded(const du::SmartPtr<zelk::Scene>& scene)
{
  const Pin self(this);
  if (const LiveGuiTree tree(guiTree); tree) {
    tree->OnSceneAdded(scene);
  }
}

void MySceneManagerObserver::OnViewRemoved(const du::SmartPtr<zelk::View>& view)
{
  const Pin self(this);
  if (const LiveGuiTree tree(guiTree); tree) {
    tree->OnViewRemoved(view);
  }
}

}  // namespace guitree
