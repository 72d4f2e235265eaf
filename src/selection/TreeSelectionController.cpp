#include "guitree/TreeSelectionController.h"

namespace guitree {

TreeSelectionController::TreeSelectionController(const du::SmartPtr<zelk::SelectionManager>& manager, bool /*ignored*/)
    : selectionManager(manager)
{
}

TreeSelectionController::~TreeSelectionController() = default;

}  // namespace guitree
