#include "ui/Viewer/OcctWindow.h"

#include <QWidget>

#include <Xw_Window.hxx>

// Xlib last: its macros clash with names of Qt and of the model.
#include <X11/Xlib.h>

OcctWindow::OcctWindow(QWidget *widget)
    : m_widget(widget)
{
    DoResize();
}

Aspect_Drawable OcctWindow::NativeHandle() const
{
    return static_cast<Aspect_Drawable>(m_widget->winId());
}

Aspect_Drawable OcctWindow::NativeParentHandle() const
{
    const QWidget *parent = m_widget->parentWidget();
    return parent ? static_cast<Aspect_Drawable>(parent->winId()) : 0;
}

Aspect_TypeOfResize OcctWindow::DoResize()
{
    const QRect rect = m_widget->rect();
    const qreal ratio = m_widget->devicePixelRatioF();
    m_left = 0;
    m_top = 0;
    m_right = qRound(rect.width() * ratio);
    m_bottom = qRound(rect.height() * ratio);
    return Aspect_TOR_UNKNOWN;
}

Standard_Boolean OcctWindow::IsMapped() const
{
    return !(m_widget->isMinimized() || m_widget->isHidden());
}

void OcctWindow::Map() const
{
    m_widget->show();
    m_widget->update();
}

void OcctWindow::Unmap() const
{
    m_widget->hide();
}

Standard_Real OcctWindow::Ratio() const
{
    return m_bottom > 0 ? double(m_right - m_left) / double(m_bottom - m_top) : 1.0;
}

void OcctWindow::Position(Standard_Integer &x1, Standard_Integer &y1, Standard_Integer &x2, Standard_Integer &y2) const
{
    x1 = m_left;
    y1 = m_top;
    x2 = m_right;
    y2 = m_bottom;
}

void OcctWindow::Size(Standard_Integer &width, Standard_Integer &height) const
{
    width = m_right - m_left;
    height = m_bottom - m_top;
}

Standard_Real OcctWindow::DevicePixelRatio() const
{
    return m_widget->devicePixelRatioF();
}

namespace occ {

Handle(Aspect_DisplayConnection) displayConnection()
{
    static const Handle(Aspect_DisplayConnection) connection = new Aspect_DisplayConnection();
    return connection;
}

Handle(Aspect_Window) createHiddenWindow(int width, int height)
{
    Handle(Xw_Window) window = new Xw_Window(displayConnection(), "", 0, 0, qMax(width, 1), qMax(height, 1));
    window->SetVirtual(Standard_True);
    return window;
}

void resizeHiddenWindow(const Handle(Aspect_Window) &window, int width, int height)
{
    Handle(Xw_Window) xWindow = Handle(Xw_Window)::DownCast(window);
    if (xWindow.IsNull())
        return;
    Display *display = reinterpret_cast<Display *>(displayConnection()->GetDisplayAspect());
    XResizeWindow(display, static_cast<Window>(xWindow->XWindow()), static_cast<unsigned>(qMax(width, 1)),
                  static_cast<unsigned>(qMax(height, 1)));
    XSync(display, False);
    xWindow->DoResize();
}

} // namespace occ
