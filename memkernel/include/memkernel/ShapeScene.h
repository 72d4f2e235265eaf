#pragma once

#include <cstddef>
#include <shared_mutex>
#include <unordered_map>

#include "memkernel/Instance.h"
#include "memkernel/ObserverList.h"
#include "memkernel/ShapeInstance.h"
#include "zelk/GeometryCompareScene.h"
#include "zelk/SchematicScene.h"
#include "zelk/SelectionManager.h"
#include "zelk/ShapeScene.h"
#include "zelk/ShapeSceneObserver.h"
#include "zelk/Tree.h"

namespace memkernel {

/// What the flags of `ShapeScene::RegisterObserver` ask for; 0xb is all of it.
enum ShapeSceneEvents : unsigned int {
  /// Shape instances come and go.
  ShapeSceneExistence = 1U << 0U,
  ShapeSceneVisibility = 1U << 1U,
  /// Comparison, synchronisation, and marks in the tree.
  ShapeSceneMarks = 1U << 3U,
};

/// How a shape instance begins.
struct ShapeInstanceInfo {
  /// Null takes the shape of the instance's product.
  du::SmartPtr<Shape> shape{};
  bool isVisible = true;
  bool isThumbnail = false;
};

/// What all shape scenes are made of, and the edits that fill them. The owner's thread edits; the queries of the scene
/// and of its shape instances are for any thread. Each edit that changes anything is announced before the operation
/// returns, and one that is made from inside a callback when all observers have heard the present one.
class ShapeSceneContent : public virtual du::RefCounted {
public:
  ~ShapeSceneContent() override;

  /// Null if the instance is null, is in no tree, or has a shape instance in this scene.
  du::SmartPtr<ShapeInstance> CreateShapeInstance(const du::SmartPtr<Instance>& instance,
                                                  const ShapeInstanceInfo& info = {});
  /// False if there is none. The shape instances of what leaves the tree are removed by the scene itself.
  bool RemoveShapeInstance(const du::SmartPtr<zelk::Instance>& instance);
  /// The operations below answer false for null and for a shape instance of another scene.
  bool SetVisible(const du::SmartPtr<ShapeInstance>& shapeInstance, bool isVisible);
  /// `isFirst` tells on which side of the comparison the instance stands.
  bool SetCompared(const du::SmartPtr<ShapeInstance>& shapeInstance, bool isCompared, bool isFirst = false);
  /// The next three are announced by `OnApplyTreeUpdate`.
  bool SetThumbnail(const du::SmartPtr<ShapeInstance>& shapeInstance, bool isThumbnail);
  bool SetRejectedCopyrights(const du::SmartPtr<ShapeInstance>& shapeInstance, bool isRejected);
  /// A status of this shape instance alone, in place of its shape's.
  bool SetShapeDataStatus(const du::SmartPtr<ShapeInstance>& shapeInstance, zelk::ShapeDataStatus status);
  void NotifyUnsyncInstances(bool isUnsynced);
  void NotifyApplyTreeUpdate();

  /// Null for none. Any thread.
  [[nodiscard]] du::SmartPtr<ShapeInstance> FindShapeInstance(const zelk::Instance* instance) const;
  /// Any thread.
  [[nodiscard]] std::size_t GetShapeInstanceCount() const;

protected:
  ShapeSceneContent(const du::SmartPtr<zelk::SelectionManager>& selectionManager, const du::SmartPtr<zelk::Tree>& tree);

  [[nodiscard]] const du::SmartPtr<zelk::SelectionManager>& _GetSelectionManager() const { return m_selectionManager; }
  bool _RegisterObserver(zelk::ShapeSceneObserver& observer, du::Flags what, bool replay);
  bool _UnregisterObserver(zelk::ShapeSceneObserver& observer);

private:
  friend class ShapeSceneBatch;
  class TreeFollower;

  [[nodiscard]] bool _IsOwn(const ShapeInstance* shapeInstance) const;
  template <typename Call>
  void _Tell(ShapeSceneEvents events, Call call);

  const du::SmartPtr<zelk::SelectionManager> m_selectionManager;
  const du::SmartPtr<zelk::Tree> m_tree;
  /// Guards the map.
  mutable std::shared_mutex m_mutex;
  std::unordered_map<const zelk::Instance*, du::SmartPtr<ShapeInstance>> m_shapeInstances;
  ObserverList<zelk::ShapeSceneObserver> m_observers;
  du::SmartPtr<TreeFollower> m_follower;
};

/// A shape scene behind one of the scene classes of the kernel contract. Lives as long as anybody holds it; observers
/// that are still registered then are told by `OnUnregister`.
template <typename Contract>
class BasicShapeScene final : public Contract, public ShapeSceneContent {
public:
  /// Both may be null. Without a tree nothing is removed by itself.
  explicit BasicShapeScene(const du::SmartPtr<zelk::SelectionManager>& selectionManager = {},
                           const du::SmartPtr<zelk::Tree>& tree = {})
      : ShapeSceneContent(selectionManager, tree)
  {
  }

  void GetSelectionManager(du::SmartPtr<zelk::SelectionManager>& out) const override { out = _GetSelectionManager(); }
  bool RegisterObserver(zelk::ShapeSceneObserver& observer, du::Flags what, bool replay) override
  {
    return _RegisterObserver(observer, what, replay);
  }
  bool UnregisterObserver(zelk::ShapeSceneObserver& observer) override { return _UnregisterObserver(observer); }
  bool GetShapeInstance(const du::ConstSmartPtr<zelk::Instance>& instance,
                        du::SmartPtr<zelk::ShapeInstance>& out) const override
  {
    out = FindShapeInstance(instance.Get());
    return static_cast<bool>(out);
  }
};

using ShapeScene = BasicShapeScene<zelk::ShapeScene>;
using GeometryCompareScene = BasicShapeScene<zelk::GeometryCompareScene>;

/// A scene of drawings: it has a selection and nothing else.
class SchematicScene final : public zelk::SchematicScene {
public:
  explicit SchematicScene(const du::SmartPtr<zelk::SelectionManager>& selectionManager = {});

  void GetSelectionManager(du::SmartPtr<zelk::SelectionManager>& out) const override { out = m_selectionManager; }

private:
  const du::SmartPtr<zelk::SelectionManager> m_selectionManager;
};

/// Brackets a run of edits of a scene, as `TreeBatch` does for a tree.
class [[nodiscard]] ShapeSceneBatch {
public:
  explicit ShapeSceneBatch(ShapeSceneContent& scene);
  ~ShapeSceneBatch();
  ShapeSceneBatch(const ShapeSceneBatch&) = delete;
  ShapeSceneBatch& operator=(const ShapeSceneBatch&) = delete;

private:
  const du::SmartPtr<ShapeSceneContent> m_scene;
};

}  // namespace memkernel
