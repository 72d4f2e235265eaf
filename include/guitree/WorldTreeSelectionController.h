#pragma once

#include <set>

#include "du/SmartPtr.h"
#include "guitree/TreeSelectionController.h"
#include "zelk/Instance.h"
#include "zelk/SelectionManager.h"

namespace guitree {

/// The controller over a kernel's selection manager. All selection is the manager's: what is set here comes back to the
/// panel by the manager's observers. Without a manager the queries answer nothing and `SetItems` does nothing.
class WorldTreeSelectionController : public TreeSelectionController {
public:
  explicit WorldTreeSelectionController(const du::SmartPtr<zelk::SelectionManager>& manager);
  WorldTreeSelectionController(const WorldTreeSelectionController&) = default;
  WorldTreeSelectionController& operator=(const WorldTreeSelectionController&) = default;
  ~WorldTreeSelectionController() override;

  [[nodiscard]] unsigned int GetTotalItemCount() override;
  void GetSelectedInstances(std::set<du::SmartPtr<zelk::BaseInstance>>& out) override;
  [[nodiscard]] bool ContainsInstance() override;
  /// What is no `zelk::Instance` is asked about as nothing, and the kernel's answer stands.
  [[nodiscard]] bool ContainsItem(const du::SmartPtr<zelk::BaseInstance>& instance) override;
  /// In one step. While groups of equal siblings are collapsed, the first sibling of a group stands for all of them and
  /// any other for itself. What is no `zelk::Instance` is passed over.
  void SetItems(const std::set<du::SmartPtr<zelk::BaseInstance>>& items) override;
  /// False for what is no `zelk::Instance`, without asking the kernel.
  [[nodiscard]] bool IsItemAssocHlighted(const du::SmartPtr<zelk::BaseInstance>& instance) override;
  void GetAssocHlightedInstances(std::set<du::SmartPtr<zelk::BaseInstance>>& out) override;

  virtual void SetItems(const std::set<du::SmartPtr<zelk::Instance>>& items);
  /// Adds to `out`, unlike the form over base instances, which replaces it.
  virtual void GetSelectedInstances(std::set<du::SmartPtr<zelk::Instance>>& out);

protected:
  /// Replaces `out` with the instances of a list.
  void GetInstances(zelk::SelectionManager::ListID list, std::set<du::SmartPtr<zelk::BaseInstance>>& out);
};

}  // namespace guitree
