#pragma once

#include <V3d_View.hxx>

#include <QPoint>
#include <QTimer>
#include <QWidget>

#include "ModelScene.h"
#include "du/SmartPtr.h"
#include "memkernel/Instance.h"

namespace viewer {

/// From where one looks at a model whose z axis points upwards.
enum class Direction { Front, Back, Left, Right, Top, Bottom, Corner };

/// Whether a pick replaces the selection or turns what is picked over.
enum class PickMode { Replace, Toggle };

/// A window on a `ModelScene`: the left button turns and, where the mouse stands still, picks; the middle one, or the
/// left one with Shift, moves; the right one and the wheel zoom; the arrow keys turn, with Shift they move, and + and -
/// zoom. As long as nobody has moved the camera it shows everything. Ends before its scene.
class ModelView final : public QWidget {
  Q_OBJECT

public:
  explicit ModelView(ModelScene& scene, QWidget* parent = nullptr);
  ModelView(const ModelView&) = delete;
  ModelView& operator=(const ModelView&) = delete;
  ~ModelView() override;

  void FitAll();
  void LookFrom(Direction direction);
  void SetDark(bool isDark);
  [[nodiscard]] bool IsDark() const noexcept { return m_isDark; }
  /// Where a point of the room is seen, in the widget's coordinates.
  [[nodiscard]] QPoint Project(const gp_Pnt& point) const;
  /// Null where there is nothing. Costs what a hover costs, and highlights what it finds.
  [[nodiscard]] du::SmartPtr<memkernel::Instance> FindAt(const QPoint& place);
  /// Whether what is seen is what there is to see; otherwise it will be soon.
  [[nodiscard]] bool IsUpToDate() const { return m_isOpen && !m_isStale && !m_redraw.isActive(); }
  /// What is drawn now.
  [[nodiscard]] QImage Capture();

  [[nodiscard]] QPaintEngine* paintEngine() const override { return nullptr; }
  [[nodiscard]] QSize sizeHint() const override { return {800, 600}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {120, 120}; }

Q_SIGNALS:
  /// A null instance: beside everything.
  void Picked(const du::SmartPtr<memkernel::Instance>& instance, viewer::PickMode mode);
  void Hovered(const du::SmartPtr<memkernel::Instance>& instance);
  void FocusGained();

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void leaveEvent(QEvent* event) override;

private:
  enum class Drag { None, Turn, Move, Zoom };

  void _Open();
  void _OnContentChanged();
  void _Redraw();
  void _Update();
  void _Hover(const QPoint& place);
  void _DragTo(const QPoint& place);
  void _TurnBy(const QPoint& by);
  [[nodiscard]] QPoint _ToPixels(const QPointF& place) const;
  /// The camera is the user's from now on.
  void _TakeCamera() { m_showsAll = false; }

  ModelScene& m_scene;
  Handle(V3d_View) m_view;
  bool m_isOpen = false;
  bool m_isStale = true;
  bool m_isDark = false;
  bool m_showsAll = true;
  bool m_isFitDue = false;
  bool m_hasMoved = false;
  Drag m_drag = Drag::None;
  QPoint m_pressed;
  QPoint m_last;
  du::SmartPtr<memkernel::Instance> m_hovered;
  QTimer m_redraw;
};

}  // namespace viewer
