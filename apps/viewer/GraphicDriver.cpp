#include "GraphicDriver.h"

#include <Aspect_DisplayConnection.hxx>
#include <OpenGl_GraphicDriver.hxx>
#include <Standard_Failure.hxx>
#include <V3d_Viewer.hxx>
#include <Xw_Window.hxx>

#include <QGuiApplication>
#include <stdexcept>
#include <string>

namespace viewer {

Handle(Graphic3d_GraphicDriver) MakeGraphicDriver()
{
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (x11 == nullptr) {
    throw std::runtime_error("the 3D view needs an X display (QT_QPA_PLATFORM=xcb), not "
                             + QGuiApplication::platformName().toStdString());
  }
  try {
    // The connection of Qt itself: on another one the server might not know a new window yet.
    const Handle(Aspect_DisplayConnection) display =
        new Aspect_DisplayConnection(reinterpret_cast<Aspect_XDisplay*>(x11->display()));
    const Handle(OpenGl_GraphicDriver) driver = new OpenGl_GraphicDriver(display);
    driver->ChangeOptions().swapInterval = 0;
    return Handle(Graphic3d_GraphicDriver)(driver);
  } catch (const Standard_Failure& failure) {
    throw std::runtime_error(std::string("the 3D view needs OpenGL: ") + failure.GetMessageString());
  }
}

Handle(Aspect_Window) MakeNativeWindow(const Handle(Graphic3d_GraphicDriver) & driver, QWidget& widget)
{
  const Handle(Xw_Window) window =
      new Xw_Window(driver->GetDisplayConnection(), static_cast<Aspect_Drawable>(widget.winId()));
  if (!window->IsMapped()) {
    window->Map();
  }
  return Handle(Aspect_Window)(window);
}

void EndView(Handle(V3d_View) & view)
{
  const auto driver = Handle(OpenGl_GraphicDriver)::DownCast(view->Viewer()->Driver());
  QWidget standIn;
  // Where OpenGL is in use the driver fails at a view that never had a window.
  if (view->Window().IsNull() && !driver->GetSharedContext().IsNull()) {
    const Handle(Xw_Window) window =
        new Xw_Window(driver->GetDisplayConnection(), static_cast<Aspect_Drawable>(standIn.winId()));
    window->SetVirtual(true);
    view->SetWindow(window);
  }
  view->Remove();
  // Ahead of the window that stands in.
  view.Nullify();
}

}  // namespace viewer
