#pragma once

#include <shared_mutex>

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "structure_utils/TreeResultsList.h"
#include "zelk/Scene.h"
#include "zelk/ShapeScene.h"

namespace structure_utils {

/// What a filter needs beyond the instance: the scene, the results list and somebody who knows the status of an
/// instance. It travels with a background run, so it may be read from any thread and may outlive whoever made it.
class TreeFilterAdditionalInfo : public virtual du::RefCounted {
public:
  /// Answers whether something is wrong with an instance. Asked on worker threads.
  class TreeFilterStatusLookup {
  public:
    enum TFStatus {
      TFStatusNone = 0,
      TFStatusShapeFailed = 1,
      TFStatusBodyFailed = 2,
      TFStatusConstructionBodyFailed = 3,
      TFStatusCollapsedSiblingFailed = 4,
      TFStatusProxyShapeFailed = 5,
      TFStatusProxyExpandFailed = 6,
    };

    virtual TFStatus TreeFilterGetItemStatus(const du::ConstSmartPtr<zelk::Instance>& instance,
                                             const du::SmartPtr<zelk::Scene>& scene) = 0;

  protected:
    TreeFilterStatusLookup() = default;
    TreeFilterStatusLookup(const TreeFilterStatusLookup&) = default;
    TreeFilterStatusLookup& operator=(const TreeFilterStatusLookup&) = default;
    ~TreeFilterStatusLookup() = default;
  };

  /// Each argument may be null. `lookup` is not owned; whoever owns it calls `DetachStatusLookup` before it ends.
  TreeFilterAdditionalInfo(const du::SmartPtr<zelk::ShapeScene>& scene, const du::SmartPtr<TreeResultsList>& results,
                           TreeFilterStatusLookup* lookup);

  [[nodiscard]] const du::SmartPtr<zelk::ShapeScene>& GetScene() const noexcept { return m_scene; }
  [[nodiscard]] const du::SmartPtr<TreeResultsList>& GetResultsList() const noexcept { return m_results; }

  /// What the look-up says of the instance in this info's scene; `TFStatusNone` without a look-up, also after it was
  /// detached.
  [[nodiscard]] TreeFilterStatusLookup::TFStatus GetItemStatus(const du::ConstSmartPtr<zelk::Instance>& instance) const;

  /// Waits for a look-up in progress; none begins afterwards. Not from inside a look-up.
  void DetachStatusLookup();

private:
  const du::SmartPtr<zelk::ShapeScene> m_scene;
  const du::SmartPtr<TreeResultsList> m_results;
  /// Shared by the look-ups, exclusive for the detaching.
  mutable std::shared_mutex m_mutex;
  TreeFilterStatusLookup* m_lookup;
};

}  // namespace structure_utils
