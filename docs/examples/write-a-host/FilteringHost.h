#pragma once

#include <memory>
#include <string>
#include <unordered_set>

#include "OutlineHost.h"

// begin class
class FilteringHost : public OutlineHost {
public:
  // Asks the filter at work to end; false without one.
  bool CancelFilter();
  // Whether rows are left out below the row, which the user can ask for.
  [[nodiscard]] bool CanOpen(const zelk::BaseInstance* row) const { return m_unfilled.contains(row); }
  // What a status bar would show.
  [[nodiscard]] const std::string& GetStatus() const { return *m_status; }

  void ClearTree() override;
  void FilterNodeCreate(guitree::FilteredTree::Node* node) override;
  void SetTreeCalculating(bool calculating) override;
  void PostProcessingComplete() override;
  du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event) override;

private:
  std::unordered_set<const zelk::BaseInstance*> m_unfilled;
  du::SmartPtr<zelk::AsyncEvent> m_filterJob;
  // Shared with the controls, which may live longer than the host.
  const std::shared_ptr<std::string> m_status = std::make_shared<std::string>();
};
// end class
