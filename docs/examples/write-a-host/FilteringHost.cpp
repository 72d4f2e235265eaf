#include "FilteringHost.h"

#include <algorithm>
#include <utility>

// begin progress
namespace {

class StatusProgress : public zelk::ProgressCtrl {
public:
  StatusProgress(const du::SmartPtr<zelk::AsyncEvent>& event, std::shared_ptr<std::string> status)
      : ProgressCtrl(event), m_status(std::move(status))
  {
  }

  // Two passes over the tree report more than 100 on the way.
  void OnProgress(unsigned char percent) override
  {
    *m_status = "Filtering: " + std::to_string(std::min<int>(percent, 100)) + '%';
  }

private:
  const std::shared_ptr<std::string> m_status;
};

}  // namespace

du::SmartPtr<zelk::ProgressCtrl> FilteringHost::CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event)
{
  m_filterJob = event;
  return du::MakeSmart<StatusProgress>(event, m_status);
}

bool FilteringHost::CancelFilter()
{
  if (!m_filterJob) {
    return false;
  }
  m_filterJob->Cancel();
  return true;
}
// end progress

// begin result
void FilteringHost::SetTreeCalculating(bool calculating)
{
  *m_status = calculating ? "Filtering" : "Ready";
}

void FilteringHost::PostProcessingComplete()
{
  m_filterJob.Reset();
}

void FilteringHost::FilterNodeCreate(guitree::FilteredTree::Node* node)
{
  m_unfilled.insert(node->instance);
}

void FilteringHost::ClearTree()
{
  OutlineHost::ClearTree();
  m_unfilled.clear();
}
// end result
