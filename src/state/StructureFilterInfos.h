#pragma once

#include <memory>
#include <mutex>
#include <set>

#include "guitree/StructureTreeState.h"

namespace guitree {

/// The additional infos of one state that live still. They end on whatever thread lets go of them last, and may outlive
/// the state.
class StructureTreeState::FilterInfos {
public:
  /// Waits for look-ups in progress.
  void DetachAll()
  {
    const std::lock_guard lock(m_mutex);
    for (structure_utils::TreeFilterAdditionalInfo* const info : m_infos) {
      info->DetachStatusLookup();
    }
  }
  void Add(structure_utils::TreeFilterAdditionalInfo& info)
  {
    const std::lock_guard lock(m_mutex);
    m_infos.insert(&info);
  }
  void Remove(structure_utils::TreeFilterAdditionalInfo& info)
  {
    const std::lock_guard lock(m_mutex);
    m_infos.erase(&info);
  }

private:
  std::mutex m_mutex;
  std::set<structure_utils::TreeFilterAdditionalInfo*> m_infos;
};

/// An info that its state finds again when it ends.
class StructureTreeState::FilterInfo : public structure_utils::TreeFilterAdditionalInfo {
public:
  FilterInfo(const du::SmartPtr<zelk::ShapeScene>& scene, const du::SmartPtr<structure_utils::TreeResultsList>& results,
             TreeFilterStatusLookup& lookup, const std::shared_ptr<FilterInfos>& infos)
      : TreeFilterAdditionalInfo(scene, results, &lookup), m_infos(infos)
  {
    m_infos->Add(*this);
  }
  FilterInfo(const FilterInfo&) = delete;
  FilterInfo& operator=(const FilterInfo&) = delete;
  ~FilterInfo() override { m_infos->Remove(*this); }

private:
  const std::shared_ptr<FilterInfos> m_infos;
};

}  // namespace guitree
