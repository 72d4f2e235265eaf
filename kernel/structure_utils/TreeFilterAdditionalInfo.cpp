#include "structure_utils/TreeFilterAdditionalInfo.h"

#include <mutex>

namespace structure_utils {

TreeFilterAdditionalInfo::TreeFilterAdditionalInfo(const du::SmartPtr<zelk::ShapeScene>& scene,
                                                   const du::SmartPtr<TreeResultsList>& results,
                                                   TreeFilterStatusLookup* lookup)
    : m_scene(scene), m_results(results), m_lookup(lookup)
{
}

TreeFilterAdditionalInfo::TreeFilterStatusLookup::TFStatus TreeFilterAdditionalInfo::GetItemStatus(
    const du::ConstSmartPtr<zelk::Instance>& instance) const
{
  const std::shared_lock lock(m_mutex);
  return m_lookup ? m_lookup->TreeFilterGetItemStatus(instance, m_scene) : TreeFilterStatusLookup::TFStatusNone;
}

void TreeFilterAdditionalInfo::DetachStatusLookup()
{
  const std::unique_lock lock(m_mutex);
  m_lookup = nullptr;
}

}  // namespace structure_utils
