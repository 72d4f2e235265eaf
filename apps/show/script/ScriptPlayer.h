#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "memkernel/World.h"
#include "script/Command.h"
#include "script/InstanceFinder.h"
#include "script/PanelControl.h"
#include "script/Stage.h"
#include "zelk/SelectionManager.h"

namespace script {

/// Performs commands on a world and on a stage, as the user of a 3D viewer does by other means. Whatever panels follow
/// the two hear of it in the usual way; one of them is under the script's control. Ends before all three; an open batch
/// ends with it. Owner's thread.
class ScriptPlayer {
public:
  ScriptPlayer(const du::SmartPtr<memkernel::World>& world, Stage& stage, PanelControl& panel);
  ScriptPlayer(const ScriptPlayer&) = delete;
  ScriptPlayer& operator=(const ScriptPlayer&) = delete;
  ~ScriptPlayer();

  /// Throws `ScriptError` where the command cannot be played. One that names several instances is then without effect
  /// if one of them is not there; one that is repeated has been done as often as it could. `Print` does nothing here.
  void Play(const Command& command);
  [[nodiscard]] bool IsInBatch() const noexcept { return m_batch != nullptr; }

private:
  class Batch;
  using InstancePtr = du::SmartPtr<memkernel::Instance>;
  using Instances = std::vector<InstancePtr>;

  /// For all but additions.
  void _PlayOnce(const Command& command);
  [[nodiscard]] Instances _FindAll(const Command& command) const;
  [[nodiscard]] const Stage::ScenePtr& _FindScene(const Command& command) const;
  [[nodiscard]] du::SmartPtr<zelk::SelectionManager> _FindSelection(const Command& command) const;
  void _ChangeSelection(const Command& command, unsigned int list, zelk::SelectionManager::Operation operation) const;
  void _SetVisible(const Command& command, bool isVisible) const;
  void _SetThumbnail(const Command& command, bool isThumbnail) const;
  void _Rename(const Command& command) const;
  void _Add(const Command& command);
  /// Null for what is to be the root.
  [[nodiscard]] InstancePtr _FindParent(const Path& path) const;
  void _AddToScenes(const InstancePtr& added) const;
  [[nodiscard]] const du::SmartPtr<memkernel::Product>& _GetProduct(Verb verb, const std::string& name);
  void _Remove(const Command& command) const;
  void _ChangeProxies(const Command& command, bool (memkernel::Tree::*change)(const InstancePtr&)) const;
  void _Filter(const FilterSettings& settings) const;
  void _Sort(const FilterSettings& sorting) const;
  void _CancelFilter() const;
  void _SetResults(const Command& command) const;
  void _ActivateView(std::size_t number) const;
  void _ActivateNoView() const;
  void _RemoveView(std::size_t number) const;
  void _Expand(const Command& command) const;
  void _BeginBatch();
  void _EndBatch();

  const du::SmartPtr<memkernel::World> m_world;
  Stage& m_stage;
  PanelControl& m_panel;
  const InstanceFinder m_finder;
  /// Instances that are added under one name are instances of one product.
  std::map<std::pair<Verb, std::string>, du::SmartPtr<memkernel::Product>> m_products;
  std::unique_ptr<Batch> m_batch;
};

}  // namespace script
