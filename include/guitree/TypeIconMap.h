#pragma once

#include <cstddef>

#include "du/HashMap.h"
#include "du/SmartPtr.h"
#include "zelk/BaseInstance.h"
#include "zelk/Scene.h"

namespace guitree {

class GuiTree;
class SceneInfoLog;

/// The type icons of the instances in one scene, worked out when they are asked for and kept. An icon is an even
/// number; the next odd one is the same icon for an instance that is loaded. Owned by a `SceneInfoLog`. Owner's thread.
///
/// Walking it gives pairs of instance and icon in the list order of `du::HashMap`.
class TypeIconMap : private du::HashMap<const zelk::BaseInstance*, int> {
  using Base = du::HashMap<const zelk::BaseInstance*, int>;

public:
  using typename Base::const_iterator;
  using typename Base::value_type;

  /// Empty. Icons are worked out by the tree state that `tree` has at the time.
  explicit TypeIconMap(GuiTree* tree);
  TypeIconMap(const TypeIconMap&) = default;
  TypeIconMap& operator=(const TypeIconMap&) = default;
  ~TypeIconMap() = default;

  /// Enters or overwrites an icon; a null instance is ignored.
  void Set(const zelk::BaseInstance* instance, int icon);
  /// Answers the icon that is kept, or works it out for `scene`, adds 1 if the instance is loaded in the current scene,
  /// keeps it and answers it. False only when there is nobody to ask: for a null instance, without a tree state, and
  /// after the end of the log.
  bool Find(const zelk::BaseInstance* instance, int& icon, const du::SmartPtr<zelk::Scene>& scene);
  /// Answers only what is kept; `icon` is left alone on false.
  bool _Get(const zelk::BaseInstance* instance, int& icon) const;
  /// Drops one icon, so that the next `Find` works it out again.
  void ResetIcon(const zelk::BaseInstance* instance);
  /// Drops all icons and the bucket array: a map that was cleared may have fewer buckets than at the start.
  void Clear();

  [[nodiscard]] const_iterator begin() const { return Base::begin(); }
  [[nodiscard]] const_iterator end() const { return Base::end(); }
  [[nodiscard]] std::size_t size() const { return Base::size(); }

private:
  friend class SceneInfoLog;

  GuiTree* guiTree;
};

}  // namespace guitree
