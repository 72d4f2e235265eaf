#pragma once

#include <Aspect_Window.hxx>
#include <Graphic3d_GraphicDriver.hxx>
#include <V3d_View.hxx>

#include <QWidget>

namespace viewer {

/// Draws by OpenGL on the X display that Qt uses. Throws `std::runtime_error` where there is none, or no OpenGL on it.
[[nodiscard]] Handle(Graphic3d_GraphicDriver) MakeGraphicDriver();

/// The native window of `widget`, for a driver of the above.
[[nodiscard]] Handle(Aspect_Window) MakeNativeWindow(const Handle(Graphic3d_GraphicDriver) & driver, QWidget& widget);

/// Takes a view of such a driver out of its viewer, whether it ever had a window or not, and lets go of it.
void EndView(Handle(V3d_View) & view);

}  // namespace viewer
