#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "SmallestHost.h"

// begin class
class OutlineHost : public SmallestHost {
public:
  // Called when a batch of edits is complete; prints the rows.
  void Repaint() const;

  void StartTreeUpdate() override;
  void FinishTreeUpdate() override;
  void ClearTree() override;
  void Reset() override;
  void InstanceCreate(guitree::FilteredTree::Node* node,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      bool repopulatePending) override;

private:
  using Identity = const zelk::BaseInstance*;

  struct Row {
    std::string name;
    Identity parent = nullptr;
    std::vector<Identity> children;
  };

  // The row that stands for the topmost rows' parent is that of null.
  [[nodiscard]] Identity FindParentRow(du::SmartPtr<zelk::BaseInstance> parent) const;
  void Place(const zelk::BaseInstance& instance, Identity parent);
  void LeaveParent(Identity row);

  std::unordered_map<Identity, Row> m_rows{{nullptr, Row{}}};
  int m_depth = 0;
};
// end class
