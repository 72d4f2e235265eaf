#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "du/HashMap.h"
#include "du/SmartPtr.h"
#include "guitree/TypeIconMap.h"
#include "guitree/VisibleState.h"
#include "zelk/BaseInstance.h"
#include "zelk/Scene.h"
#include "zelk/ShapeScene.h"

namespace guitree {

class GuiTree;
class ShapeSceneObserver;

/// Plain visibility of an instance: bit 0 is visible, bit 1 is shown as a thumbnail.
enum ECompVisible {
  CompHidden = 0,
  CompVisible = 1,
  CompThumbnailHidden = 2,
  CompThumbnailVisible = 3,
};

/// What the rows of a panel show of one scene: the visible state and the type icon of each instance, and which of these
/// changed since the host was last told. Made by a tree state, owned by the `GuiTree`. Owner's thread.
///
/// A null instance is ignored everywhere, and answers as one that is in no map.
///
/// Of a parent with many children the log keeps how many of them are in which state, as long as the kernel tells that
/// they are still the same ones (`zelk::BaseInstance::GetChildListRevision`). A derived log looks at the children each
/// time instead, since it may answer another state for them than the recorded one.
class SceneInfoLog {
public:
  using VisibleMap = du::HashMap<const zelk::BaseInstance*, VisibleState>;
  using ChangeMap = du::HashMap<const zelk::BaseInstance*, int>;

  explicit SceneInfoLog(GuiTree* tree);
  SceneInfoLog(const SceneInfoLog&);
  SceneInfoLog& operator=(const SceneInfoLog&);
  virtual ~SceneInfoLog();

  /// Binds the log to a scene, and empties all four maps.
  virtual void Initialise(const du::SmartPtr<zelk::Scene>& newScene);
  /// Lets go of the scene and of the `GuiTree`. The maps stay.
  virtual void Destroy();
  /// Drops what is known of an instance. A change that waits for delivery stays: the host is still told.
  virtual void RemoveFromLog(zelk::BaseInstance* instance);

  /// Records a state. Answers whether it differs from the recorded one, that of the last change in this batch if there
  /// is one; a state that is back where the batch found it leaves no change.
  virtual bool SetVisible(zelk::BaseInstance* instance, VisibleState state);
  /// Works out the state from the children, unless it is a thumbnail, and records it. With `propagate` the parents
  /// follow, up to the first one that does not change. Constant cost a level; but where the children have changed since
  /// they were last looked at, or nothing tells whether they have, it costs their number.
  virtual void SetVisible(zelk::BaseInstance* instance, ECompVisible visible, bool propagate);
  /// Records plain hidden, whatever the children say; the parents are left alone.
  virtual void ForceVisibleToHidden(zelk::BaseInstance* instance);

  /// Switches between the two forms of an icon, told by its lowest bit. Answers whether it changed. Switching back and
  /// forth in one batch leaves no change.
  virtual bool SetLoaded(zelk::BaseInstance* instance, bool loaded);
  /// Works the icon out again; it counts as changed if it differs, or if none was known.
  virtual void MarkTypeIconChanged(const zelk::BaseInstance* instance);
  /// The icon without its loaded bit; -1 when there is nobody to work it out.
  virtual int GetUnloadedTypeIcon(const zelk::BaseInstance* instance);

  /// The recorded state, `VisibleStateHidden` for an instance without one.
  [[nodiscard]] virtual VisibleState GetCompVisibleState(const du::SmartPtr<zelk::BaseInstance>& instance);
  /// What the recorded state says of the instance itself.
  [[nodiscard]] virtual ECompVisible IsCompVisible(const du::SmartPtr<zelk::BaseInstance>& instance);

  /// Without the instances that are plain hidden.
  [[nodiscard]] virtual const VisibleMap& GetVisibleMap() const;
  /// For each changed instance its new state times 16 plus the one it had at the start of the batch.
  [[nodiscard]] virtual const ChangeMap& GetVisibleChangeMap() const;
  [[nodiscard]] virtual TypeIconMap& GetTypeIconMap();
  /// For each changed instance its new icon.
  [[nodiscard]] virtual const ChangeMap& GetTypeIconChangeMap() const;

  /// Null before `Initialise` and after `Destroy`.
  [[nodiscard]] virtual du::SmartPtr<zelk::Scene> GetScene() const;
  /// The scene as a shape scene; null if it is none.
  [[nodiscard]] virtual du::SmartPtr<zelk::ShapeScene> GetShapeScene() const;

  virtual void ClearVisibleChangeMap();
  virtual void ClearTypeIconChangeMap();
  virtual void ResetTypeIconMap();

  /// The instance has come into a comparison or has left it: works its icon out again, unloaded. Doing so twice in one
  /// batch leaves no change.
  void SetCompared(zelk::BaseInstance* instance, bool compared, bool first);

private:
  friend class GuiTree;

  /// What the children of a parent say, 3D symbols left out. It does not depend on their order, so that a change of one
  /// child can be counted without a look at the others.
  class ChildTally {
  public:
    /// `change` is 1 for a child that enters the state, and -1 for one that leaves it.
    void Count(VisibleState state, int change = 1);
    [[nodiscard]] bool IsMixed() const;
    /// The state of the parent, if it is visible itself.
    [[nodiscard]] VisibleState GetAggregate() const;

    /// The revision of the list that has been counted.
    std::uint64_t revision = 0;

  private:
    enum Kind : std::size_t { Ignored, Hidden, Visible, Mixed };

    [[nodiscard]] static Kind _GetKind(VisibleState state);

    std::array<std::uint32_t, 4> m_counts{};
  };

  /// A child has come to `parent`, as the last change of its children.
  void _NoteChildAdded(const zelk::BaseInstance& parent, const zelk::BaseInstance& child);
  /// Null if the children have to be looked at.
  [[nodiscard]] ChildTally* _FindTally(const zelk::BaseInstance& parent);
  /// Before `state` is stored for `child`.
  void _MoveInTally(const zelk::BaseInstance& child, VisibleState state);
  [[nodiscard]] bool _MayKeepTallies() const;
  [[nodiscard]] VisibleState _WalkChildren(const zelk::BaseInstance& parent);

  [[nodiscard]] VisibleState _GetState(const zelk::BaseInstance* instance) const;
  void _StoreState(const zelk::BaseInstance& instance, VisibleState state);
  [[nodiscard]] VisibleState _WorkOutState(const zelk::BaseInstance& instance, ECompVisible visible);
  [[nodiscard]] VisibleState _AggregateChildren(const zelk::BaseInstance& instance);
  [[nodiscard]] bool _NoteVisibleChange(const zelk::BaseInstance* instance, VisibleState state);
  void _ToggleIconChange(const zelk::BaseInstance* instance, int icon);

  du::SmartPtr<ShapeSceneObserver> shapeSceneObserver;
  /// The last value read from a change map.
  int lastChangeWord = 0;
  /// The state that an instance had before the last `SetVisible`.
  int lastVisibleState = VisibleStateHidden;
  VisibleMap visibleMap;
  ChangeMap visibleChangeMap;
  TypeIconMap typeIconMap;
  ChangeMap typeIconChangeMap;
  GuiTree* guiTree;
  du::SmartPtr<zelk::Scene> scene;
  std::unordered_map<const zelk::BaseInstance*, ChildTally> m_tallies;
};

}  // namespace guitree
