#include "memkernel/ShapeScene.h"

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "zelk/TreeObserver.h"

namespace memkernel {

/// Removes the shape instances of what leaves the tree, within the brackets of the tree's own run.
class ShapeSceneContent::TreeFollower : public zelk::TreeObserver {
public:
  explicit TreeFollower(ShapeSceneContent* owner) : scene(owner) {}

  void OnBeginUpdate() override
  {
    if (scene) {
      m_batch = std::make_unique<ShapeSceneBatch>(*scene);
    }
  }
  void OnEndUpdate() override { m_batch.reset(); }
  void OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                        const du::SmartPtr<zelk::BaseInstance>& /*parent*/) override
  {
    if (scene) {
      scene->RemoveShapeInstance(du::DynamicCast<zelk::Instance>(instance));
    }
  }

  /// Null once the scene has gone.
  ShapeSceneContent* scene;

private:
  std::unique_ptr<ShapeSceneBatch> m_batch;
};

ShapeSceneBatch::ShapeSceneBatch(ShapeSceneContent& scene) : m_scene(&scene)
{
  m_scene->m_observers.BeginRun();
}

ShapeSceneBatch::~ShapeSceneBatch()
{
  m_scene->m_observers.EndRun();
}

ShapeSceneContent::ShapeSceneContent(const du::SmartPtr<zelk::SelectionManager>& selectionManager,
                                     const du::SmartPtr<zelk::Tree>& tree)
    : m_selectionManager(selectionManager), m_tree(tree), m_follower(du::MakeSmart<TreeFollower>(this))
{
  if (m_tree) {
    m_tree->RegisterObserver(*m_follower, false);
  }
}

ShapeSceneContent::~ShapeSceneContent()
{
  m_follower->scene = nullptr;
  if (m_tree) {
    m_tree->UnregisterObserver(*m_follower);
  }
  m_observers.DropAll();
}

du::SmartPtr<ShapeInstance> ShapeSceneContent::CreateShapeInstance(const du::SmartPtr<Instance>& instance,
                                                                   const ShapeInstanceInfo& info)
{
  if (!instance || !instance->IsInTree() || FindShapeInstance(instance.Get())) {
    return {};
  }
  const unsigned int bits =
      (info.isVisible ? ShapeInstance::Visible : 0U) | (info.isThumbnail ? ShapeInstance::Thumbnail : 0U);
  du::SmartPtr<ShapeInstance> created(
      new ShapeInstance(instance, info.shape ? info.shape : instance->GetProduct()->GetShape(), bits));
  {
    const std::unique_lock lock(m_mutex);
    m_shapeInstances.emplace(instance.Get(), created);
  }
  _Tell(ShapeSceneExistence,
        [created](zelk::ShapeSceneObserver& observer) { observer.OnShapeInstanceCreate(created); });
  return created;
}

bool ShapeSceneContent::RemoveShapeInstance(const du::SmartPtr<zelk::Instance>& instance)
{
  const auto removed = FindShapeInstance(instance.Get());
  if (!removed) {
    return false;
  }
  {
    const std::unique_lock lock(m_mutex);
    m_shapeInstances.erase(instance.Get());
  }
  // The shape instance knows its instance until the last observer has been told, which may be later.
  const std::shared_ptr<void> mark(nullptr, [removed](void*) { removed->_Set(ShapeInstance::Gone, true); });
  _Tell(ShapeSceneExistence,
        [removed, mark](zelk::ShapeSceneObserver& observer) { observer.OnShapeInstanceRemove(removed); });
  return true;
}

bool ShapeSceneContent::SetVisible(const du::SmartPtr<ShapeInstance>& shapeInstance, bool isVisible)
{
  const du::SmartPtr<ShapeInstance> changed(shapeInstance.Get());
  if (!_IsOwn(changed.Get())) {
    return false;
  }
  if (changed->_Set(ShapeInstance::Visible, isVisible)) {
    _Tell(ShapeSceneVisibility, [changed, isVisible](zelk::ShapeSceneObserver& observer) {
      observer.OnShapeInstanceVisibility(changed, isVisible);
    });
  }
  return true;
}

bool ShapeSceneContent::SetCompared(const du::SmartPtr<ShapeInstance>& shapeInstance, bool isCompared, bool isFirst)
{
  const du::SmartPtr<ShapeInstance> changed(shapeInstance.Get());
  if (!_IsOwn(changed.Get())) {
    return false;
  }
  const bool isOtherSide = changed->_Set(ShapeInstance::ComparedFirst, isCompared && isFirst);
  if (changed->_Set(ShapeInstance::Compared, isCompared) || isOtherSide) {
    _Tell(ShapeSceneMarks, [changed](zelk::ShapeSceneObserver& observer) { observer.OnInstanceCompared(changed); });
  }
  return true;
}

bool ShapeSceneContent::SetThumbnail(const du::SmartPtr<ShapeInstance>& shapeInstance, bool isThumbnail)
{
  if (!_IsOwn(shapeInstance.Get())) {
    return false;
  }
  if (shapeInstance->_Set(ShapeInstance::Thumbnail, isThumbnail)) {
    NotifyApplyTreeUpdate();
  }
  return true;
}

bool ShapeSceneContent::SetRejectedCopyrights(const du::SmartPtr<ShapeInstance>& shapeInstance, bool isRejected)
{
  if (!_IsOwn(shapeInstance.Get())) {
    return false;
  }
  if (shapeInstance->_Set(ShapeInstance::RejectedCopyrights, isRejected)) {
    NotifyApplyTreeUpdate();
  }
  return true;
}

bool ShapeSceneContent::SetShapeDataStatus(const du::SmartPtr<ShapeInstance>& shapeInstance,
                                           zelk::ShapeDataStatus status)
{
  if (!_IsOwn(shapeInstance.Get())) {
    return false;
  }
  if (shapeInstance->m_ownStatus.exchange(status, std::memory_order_acq_rel) != status) {
    NotifyApplyTreeUpdate();
  }
  return true;
}

void ShapeSceneContent::NotifyUnsyncInstances(bool isUnsynced)
{
  _Tell(ShapeSceneMarks, [isUnsynced](zelk::ShapeSceneObserver& observer) { observer.OnUnsyncInstances(isUnsynced); });
}

void ShapeSceneContent::NotifyApplyTreeUpdate()
{
  _Tell(ShapeSceneMarks, [](zelk::ShapeSceneObserver& observer) { observer.OnApplyTreeUpdate(); });
}

du::SmartPtr<ShapeInstance> ShapeSceneContent::FindShapeInstance(const zelk::Instance* instance) const
{
  const std::shared_lock lock(m_mutex);
  const auto entry = m_shapeInstances.find(instance);
  return entry == m_shapeInstances.end() ? du::SmartPtr<ShapeInstance>() : entry->second;
}

std::size_t ShapeSceneContent::GetShapeInstanceCount() const
{
  const std::shared_lock lock(m_mutex);
  return m_shapeInstances.size();
}

bool ShapeSceneContent::_RegisterObserver(zelk::ShapeSceneObserver& observer, du::Flags what, bool replay)
{
  if (!m_observers.Add(observer, what.GetBits())) {
    return false;
  }
  if (replay && (what.GetBits() & ShapeSceneExistence) != 0) {
    const du::SmartPtr<ShapeSceneContent> self(this);
    m_observers.Replay(observer, [&](const auto& tell) {
      // A callback may remove shape instances.
      const auto existing = m_shapeInstances;
      for (const auto& [instance, shapeInstance] : existing) {
        const auto create = [&created = shapeInstance](zelk::ShapeSceneObserver& told) {
          told.OnShapeInstanceCreate(created);
        };
        if (!tell(create)) {
          return;
        }
      }
    });
  }
  return true;
}

bool ShapeSceneContent::_UnregisterObserver(zelk::ShapeSceneObserver& observer)
{
  const du::SmartPtr<ShapeSceneContent> self(m_observers.IsDropped() ? nullptr : this);
  return m_observers.Remove(observer);
}

bool ShapeSceneContent::_IsOwn(const ShapeInstance* shapeInstance) const
{
  return shapeInstance && FindShapeInstance(shapeInstance->m_instance.Get()).Get() == shapeInstance;
}

template <typename Call>
void ShapeSceneContent::_Tell(ShapeSceneEvents events, Call call)
{
  if (!m_observers.IsEmpty()) {
    // The scene may lose its last holder in a callback.
    const du::SmartPtr<ShapeSceneContent> self(this);
    m_observers.Tell(events, std::move(call));
  }
}

SchematicScene::SchematicScene(const du::SmartPtr<zelk::SelectionManager>& selectionManager)
    : m_selectionManager(selectionManager)
{
}

}  // namespace memkernel
