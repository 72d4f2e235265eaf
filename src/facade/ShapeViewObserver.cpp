#include "facade/ShapeViewObserver.h"

#include "facade/LiveGuiTree.h"

namespace guitree {

du::Symbol ShapeViewObserver::GetObjectClass() const
{
  static const du::Symbol s_class("guitree::ShapeViewObserver");
  return s_class;
}

void ShapeViewObserver::OnUnregister()
{
  const Pin self(this);
  guiTree = nullptr;
  view.Reset();
}

void ShapeViewObserver::OnHighlightColorsChange()
{
  const Pin self(this);
  if (const LiveGuiTree tree(guiTree); tree) {
    tree->OnUpdateAssocHlightColor();
  }
}

}  // namespace guitree
