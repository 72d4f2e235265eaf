#include "ModelView.h"

#include <Aspect_GradientFillMethod.hxx>
#include <Image_PixMap.hxx>
#include <SelectMgr_EntityOwner.hxx>
#include <V3d_TypeOfOrientation.hxx>

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "GraphicDriver.h"

namespace viewer {

namespace {

/// While much comes in, drawing must not take all the time.
constexpr int s_redrawMs = 40;
/// As many times as a drawing takes the next one waits for, so that a large scene goes on all the same.
constexpr int s_restPerDrawing = 3;
constexpr int s_longestRestMs = 2000;
constexpr double s_fitMargin = 0.08;
constexpr int s_keyStep = 40;
/// Edges are lines of one pixel, which would be stairs otherwise.
constexpr int s_samples = 4;

V3d_TypeOfOrientation ToOrientation(Direction direction)
{
  switch (direction) {
    case Direction::Front:
      return V3d_Yneg;
    case Direction::Back:
      return V3d_Ypos;
    case Direction::Left:
      return V3d_Xneg;
    case Direction::Right:
      return V3d_Xpos;
    case Direction::Top:
      return V3d_Zpos;
    case Direction::Bottom:
      return V3d_Zneg;
    case Direction::Corner:
      break;
  }
  return V3d_XposYnegZpos;
}

/// What is highlighted under the pointer; null for nothing.
Handle(AIS_InteractiveObject) FindDetected(AIS_InteractiveContext& context)
{
  return context.HasDetected() ? context.DetectedInteractive() : Handle(AIS_InteractiveObject)();
}

Quantity_Color MakeColor(int red, int green, int blue)
{
  return {red / 255.0, green / 255.0, blue / 255.0, Quantity_TOC_sRGB};
}

}  // namespace

ModelView::ModelView(ModelScene& scene, QWidget* parent)
    : QWidget(parent), m_scene(scene), m_view(scene.GetViewer()->CreateView())
{
  setAttribute(Qt::WA_NativeWindow);
  setAttribute(Qt::WA_PaintOnScreen);
  setAttribute(Qt::WA_NoSystemBackground);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(tr("3D view"));
  setAccessibleDescription(tr("Drag to turn, Shift and drag to move, wheel to zoom, click to select"));
  m_redraw.setSingleShot(true);
  m_redraw.setInterval(s_redrawMs);
  connect(&m_redraw, &QTimer::timeout, this, &ModelView::_Update);
  connect(&scene, &ModelScene::Changed, this, &ModelView::_Redraw);
  connect(&scene, &ModelScene::ContentChanged, this, &ModelView::_OnContentChanged);
  m_view->ChangeRenderingParams().NbMsaaSamples = s_samples;
  SetDark(false);
  m_view->SetProj(ToOrientation(Direction::Corner));
}

ModelView::~ModelView()
{
  EndView(m_view);
}

// Not before the first paint: the window of the widget is there then, and has its size.
void ModelView::_Open()
{
  m_isOpen = true;
  m_view->SetWindow(MakeNativeWindow(m_scene.GetViewer()->Driver(), *this));
  m_view->SetImmediateUpdate(false);
  m_view->TriedronDisplay(Aspect_TOTP_LEFT_LOWER, MakeColor(140, 146, 155), 0.08, V3d_ZBUFFER);
  m_isFitDue = m_showsAll;
}

void ModelView::paintEvent(QPaintEvent* /*event*/)
{
  if (!m_isOpen) {
    _Open();
  }
  if (m_isFitDue) {
    m_isFitDue = false;
    m_view->FitAll(s_fitMargin, false);
  }
  m_isStale = false;
  QElapsedTimer drawing;
  drawing.start();
  m_view->InvalidateImmediate();
  m_view->Redraw();
  m_redraw.setInterval(std::clamp(s_restPerDrawing * static_cast<int>(drawing.elapsed()), s_redrawMs, s_longestRestMs));
}

void ModelView::resizeEvent(QResizeEvent* /*event*/)
{
  if (m_isOpen) {
    m_view->MustBeResized();
    m_isFitDue = m_isFitDue || m_showsAll;
    _Update();
  }
}

void ModelView::_OnContentChanged()
{
  m_isFitDue = m_isFitDue || m_showsAll;
  _Redraw();
}

void ModelView::_Redraw()
{
  if (!m_redraw.isActive()) {
    m_redraw.start();
  }
}

void ModelView::_Update()
{
  m_isStale = true;
  update();
}

void ModelView::FitAll()
{
  m_showsAll = true;
  m_isFitDue = true;
  _Update();
}

void ModelView::LookFrom(Direction direction)
{
  m_view->SetProj(ToOrientation(direction));
  FitAll();
}

void ModelView::SetDark(bool isDark)
{
  m_isDark = isDark;
  const Quantity_Color top = isDark ? MakeColor(46, 52, 61) : MakeColor(250, 251, 252);
  const Quantity_Color bottom = isDark ? MakeColor(20, 22, 26) : MakeColor(208, 215, 224);
  m_view->SetBgGradientColors(top, bottom, Aspect_GFM_VER, false);
  m_view->Invalidate();
  _Update();
}

QPoint ModelView::_ToPixels(const QPointF& place) const
{
  return (place * devicePixelRatioF()).toPoint();
}

QPoint ModelView::Project(const gp_Pnt& point) const
{
  int x = 0;
  int y = 0;
  m_view->Convert(point.X(), point.Y(), point.Z(), x, y);
  return (QPointF(x, y) / devicePixelRatioF()).toPoint();
}

du::SmartPtr<memkernel::Instance> ModelView::FindAt(const QPoint& place)
{
  if (!m_isOpen) {
    return {};
  }
  const QPoint pixel = _ToPixels(place);
  const Handle(AIS_InteractiveContext)& context = m_scene.GetContext();
  const Handle(AIS_InteractiveObject) before = FindDetected(*context);
  context->MoveTo(pixel.x(), pixel.y(), m_view, false);
  auto found = context->HasDetected() ? m_scene.FindInstance(context->DetectedInteractive().get()) : nullptr;
  // The colour of the selection must stay to be seen.
  if (found && m_scene.IsSelected(*found)) {
    context->ClearDetected(false);
  }
  if (FindDetected(*context) != before) {
    _Update();
  }
  return found;
}

QImage ModelView::Capture()
{
  Image_PixMap pixels;
  if (!m_isOpen || !m_view->ToPixMap(pixels, _ToPixels({1.0 * width(), 0}).x(), _ToPixels({1.0 * height(), 0}).x())) {
    return {};
  }
  const QImage::Format format = pixels.Format() == Image_Format_RGBA ? QImage::Format_RGBA8888 : QImage::Format_RGB888;
  const QImage image(pixels.Data(), static_cast<int>(pixels.SizeX()), static_cast<int>(pixels.SizeY()),
                     static_cast<qsizetype>(pixels.SizeRowBytes()), format);
  return pixels.IsTopDown() ? image.copy() : image.mirrored();
}

void ModelView::_Hover(const QPoint& place)
{
  const du::SmartPtr<memkernel::Instance> found = FindAt(place);
  if (found != m_hovered) {
    m_hovered = found;
    Q_EMIT Hovered(found);
  }
}

void ModelView::mousePressEvent(QMouseEvent* event)
{
  if (m_drag != Drag::None) {
    return;
  }
  m_pressed = event->position().toPoint();
  m_last = m_pressed;
  m_hasMoved = false;
  const QPoint pixel = _ToPixels(event->position());
  if (event->button() == Qt::MiddleButton
      || (event->button() == Qt::LeftButton && event->modifiers() == Qt::ShiftModifier)) {
    m_drag = Drag::Move;
  } else if (event->button() == Qt::LeftButton) {
    m_drag = Drag::Turn;
    m_view->StartRotation(pixel.x(), pixel.y());
  } else if (event->button() == Qt::RightButton) {
    m_drag = Drag::Zoom;
    m_view->StartZoomAtPoint(pixel.x(), pixel.y());
  }
}

void ModelView::mouseMoveEvent(QMouseEvent* event)
{
  const QPoint place = event->position().toPoint();
  if (event->buttons() == Qt::NoButton) {
    m_drag = Drag::None;
    _Hover(place);
    return;
  }
  m_hasMoved = m_hasMoved || (place - m_pressed).manhattanLength() >= QApplication::startDragDistance();
  if (m_hasMoved) {
    _DragTo(place);
  }
}

void ModelView::_DragTo(const QPoint& place)
{
  _TakeCamera();
  const QPoint from = _ToPixels(m_last);
  const QPoint to = _ToPixels(place);
  switch (m_drag) {
    case Drag::Turn:
      m_view->Rotation(to.x(), to.y());
      break;
    case Drag::Move:
      m_view->Pan(to.x() - from.x(), from.y() - to.y());
      break;
    case Drag::Zoom:
      m_view->ZoomAtPoint(from.x(), from.y(), to.x(), to.y());
      break;
    case Drag::None:
      break;
  }
  m_last = place;
  _Update();
}

void ModelView::mouseReleaseEvent(QMouseEvent* event)
{
  const bool isPick = m_drag == Drag::Turn && !m_hasMoved;
  m_drag = Drag::None;
  if (isPick) {
    const bool isToggle = event->modifiers().testFlag(Qt::ControlModifier);
    const du::SmartPtr<memkernel::Instance> found = FindAt(event->position().toPoint());
    m_scene.GetContext()->ClearDetected(false);
    Q_EMIT Picked(found, isToggle ? PickMode::Toggle : PickMode::Replace);
  }
}

void ModelView::wheelEvent(QWheelEvent* event)
{
  _TakeCamera();
  const QPoint pixel = _ToPixels(event->position());
  const int step = std::clamp(event->angleDelta().y() / 4, -100, 100);
  m_view->StartZoomAtPoint(pixel.x(), pixel.y());
  m_view->ZoomAtPoint(0, 0, step, 0);
  _Update();
}

void ModelView::_TurnBy(const QPoint& by)
{
  const QPoint middle = _ToPixels(rect().center());
  m_view->StartRotation(middle.x(), middle.y());
  m_view->Rotation(middle.x() + by.x(), middle.y() + by.y());
}

void ModelView::keyPressEvent(QKeyEvent* event)
{
  QPoint step;
  switch (event->key()) {
    case Qt::Key_Left:
      step = {-s_keyStep, 0};
      break;
    case Qt::Key_Right:
      step = {s_keyStep, 0};
      break;
    case Qt::Key_Up:
      step = {0, -s_keyStep};
      break;
    case Qt::Key_Down:
      step = {0, s_keyStep};
      break;
    case Qt::Key_Plus:
      m_view->SetZoom(1.25);
      break;
    case Qt::Key_Minus:
      m_view->SetZoom(0.8);
      break;
    default:
      QWidget::keyPressEvent(event);
      return;
  }
  _TakeCamera();
  if (event->modifiers().testFlag(Qt::ShiftModifier)) {
    m_view->Pan(step.x(), -step.y());
  } else if (!step.isNull()) {
    _TurnBy(step);
  }
  _Update();
}

void ModelView::focusInEvent(QFocusEvent* event)
{
  QWidget::focusInEvent(event);
  Q_EMIT FocusGained();
}

void ModelView::leaveEvent(QEvent* event)
{
  QWidget::leaveEvent(event);
  m_scene.GetContext()->ClearDetected(false);
  _Update();
  if (m_hovered) {
    m_hovered.Reset();
    Q_EMIT Hovered({});
  }
}

}  // namespace viewer
