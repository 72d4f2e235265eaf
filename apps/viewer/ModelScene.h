#pragma once

#include <AIS_ConnectedInteractive.hxx>
#include <AIS_InteractiveContext.hxx>
#include <AIS_Shape.hxx>
#include <TopoDS_Shape.hxx>
#include <V3d_Viewer.hxx>

#include <QObject>
#include <QTimer>
#include <cstddef>
#include <deque>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "PlacedShape.h"
#include "dg/Color.h"
#include "du/SmartPtr.h"
#include "memkernel/Shape.h"

namespace viewer {

/// What is drawn: one presentation for each placed instance, all those of one shape sharing its triangles. Knows
/// nothing of the kernel's scenes, and any number of windows may look at it. Presentations and highlights come in small
/// portions, between which the window answers. Owner's thread.
class ModelScene final : public QObject {
  Q_OBJECT

public:
  using InstanceSet = std::unordered_set<const zelk::BaseInstance*>;

  /// Throws `std::runtime_error` where there is no X display or no OpenGL.
  ModelScene();
  ModelScene(const ModelScene&) = delete;
  ModelScene& operator=(const ModelScene&) = delete;
  ~ModelScene() override;

  /// Visible; nothing is drawn of it before its shape is put in. An instance that is there already stays as it is.
  /// Answers whether it is the first one of its shape, for which nobody has put anything in yet.
  bool Add(const PlacedShape& placed);
  /// The operations below do nothing for an instance that is not there. Answers whether it was the last one of its
  /// shape, of which nothing is kept then.
  bool Remove(const zelk::BaseInstance& instance);
  void SetVisible(const zelk::BaseInstance& instance, bool isVisible);
  /// All instances of `shape`, present and to come, are drawn from `drawable`; a null one leaves them without anything.
  void PutShape(const memkernel::Shape& shape, const TopoDS_Shape& drawable);

  /// Highlights exactly these, soon. Others than those that are there may be among them.
  void SetSelected(InstanceSet instances);
  void SetAssociated(InstanceSet instances);
  void SetColors(const dg::Color& selected, const dg::Color& associated, const dg::Color& hovered);

  /// Null for a presentation of something else, and for null.
  [[nodiscard]] du::SmartPtr<memkernel::Instance> FindInstance(const AIS_InteractiveObject* presentation) const;
  /// How many presentations are there, hidden ones included, and how many are not hidden.
  [[nodiscard]] std::size_t GetDrawnCount() const noexcept { return m_owners.size(); }
  [[nodiscard]] std::size_t GetShownCount() const noexcept { return m_shownCount; }
  /// Whether the instance is drawn now, and whether it is, or will be soon, highlighted as selected.
  [[nodiscard]] bool IsShown(const zelk::BaseInstance& instance) const;
  [[nodiscard]] bool IsSelected(const zelk::BaseInstance& instance) const;
  /// The place of an instance in the room; false where nothing is drawn of it.
  [[nodiscard]] bool FindCenter(const zelk::BaseInstance& instance, gp_Pnt& center) const;
  /// Whether presentations of shapes that are there are still to be made, or to be highlighted.
  [[nodiscard]] bool IsAtWork() const noexcept { return !m_pending.empty() || !m_unlit.empty(); }

  [[nodiscard]] const Handle(V3d_Viewer) & GetViewer() const noexcept { return m_viewer; }
  [[nodiscard]] const Handle(AIS_InteractiveContext) & GetContext() const noexcept { return m_context; }

Q_SIGNALS:
  /// The windows show something else now.
  void Changed();
  /// As `Changed`, where presentations have come or gone.
  void ContentChanged();

private:
  enum class Look { Plain, Associated, Selected };

  struct Item {
    PlacedShape placed;
    /// Null before the shape is there.
    Handle(AIS_ConnectedInteractive) presentation;
    bool isVisible = true;
    bool isSelected = false;
    bool isAssociated = false;
    /// As it is drawn now, which follows what is asked for.
    Look look = Look::Plain;
  };
  struct ShapeEntry {
    /// Null before the shape is there, and for a shape of which nothing is drawn.
    Handle(AIS_Shape) prototype;
    std::unordered_set<const zelk::BaseInstance*> users;
  };

  void _SetUpContext();
  [[nodiscard]] Item* _Find(const zelk::BaseInstance& instance);
  [[nodiscard]] const Item* _Find(const zelk::BaseInstance& instance) const;
  void _MakePending(const zelk::BaseInstance& instance);
  void _WorkSome();
  void _MakeFirst();
  void _HighlightFirst();
  void _Make(Item& item);
  void _Display(Item& item);
  void _Erase(Item& item);
  void _Highlight(Item& item);
  template <bool Item::*Flag>
  void _SetFlag(InstanceSet& present, InstanceSet wanted);

  Handle(V3d_Viewer) m_viewer;
  Handle(AIS_InteractiveContext) m_context;
  Handle(Prs3d_Drawer) m_selectedStyle;
  Handle(Prs3d_Drawer) m_associatedStyle;
  std::unordered_map<const zelk::BaseInstance*, Item> m_items;
  std::unordered_map<const memkernel::Shape*, ShapeEntry> m_shapes;
  std::unordered_map<const AIS_InteractiveObject*, const zelk::BaseInstance*> m_owners;
  std::deque<const zelk::BaseInstance*> m_pending;
  /// What may have to look otherwise.
  std::deque<const zelk::BaseInstance*> m_unlit;
  InstanceSet m_selected;
  InstanceSet m_associated;
  std::size_t m_shownCount = 0;
  QTimer m_timer;
};

}  // namespace viewer
