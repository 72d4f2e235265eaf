#pragma once

#include <set>

#include "guitree/TreeSelectionController.h"

namespace testsupport {

/// A selection that a test writes down.
class ScriptedSelectionController : public guitree::TreeSelectionController {
public:
  using InstanceSet = std::set<du::SmartPtr<zelk::BaseInstance>>;

  ScriptedSelectionController() : TreeSelectionController(nullptr, false) {}

  InstanceSet selected;
  InstanceSet highlighted;

  [[nodiscard]] unsigned int GetTotalItemCount() override { return static_cast<unsigned int>(selected.size()); }
  void GetSelectedInstances(InstanceSet& out) override { out = selected; }
  [[nodiscard]] bool ContainsInstance() override { return !selected.empty(); }
  [[nodiscard]] bool ContainsItem(const du::SmartPtr<zelk::BaseInstance>& instance) override
  {
    return selected.contains(instance);
  }
  void SetItems(const InstanceSet& items) override { selected = items; }
  [[nodiscard]] bool IsItemAssocHlighted(const du::SmartPtr<zelk::BaseInstance>& instance) override
  {
    return highlighted.contains(instance);
  }
  void GetAssocHlightedInstances(InstanceSet& out) override { out = highlighted; }
};

}  // namespace testsupport
