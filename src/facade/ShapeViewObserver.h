#pragma once

#include "du/SmartPtr.h"
#include "zelk/ShapeView.h"
#include "zelk/ShapeViewObserver.h"

namespace guitree {

class GuiTree;

/// Listens to the current view for a `GuiTree`, which clears both members when it is done with the view.
class ShapeViewObserver : public zelk::ShapeViewObserver {
public:
  explicit ShapeViewObserver(GuiTree* tree) : guiTree(tree) {}

  [[nodiscard]] du::Symbol GetObjectClass() const override;
  void OnUnregister() override;
  void OnHighlightColorsChange() override;

  GuiTree* guiTree;
  du::SmartPtr<zelk::ShapeView> view;
};

}  // namespace guitree
