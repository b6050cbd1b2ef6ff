#pragma once

#include <Aspect_DisplayConnection.hxx>
#include <Aspect_Window.hxx>

class QWidget;

// The native window of a Qt widget, as Open CASCADE draws into it. The widget owns
// the window; this only reports its handle, size and state.
class OcctWindow : public Aspect_Window
{
    DEFINE_STANDARD_RTTI_INLINE(OcctWindow, Aspect_Window)
public:
    explicit OcctWindow(QWidget *widget);

    Aspect_Drawable NativeHandle() const override;
    Aspect_Drawable NativeParentHandle() const override;
    Aspect_FBConfig NativeFBConfig() const override { return nullptr; }
    Aspect_TypeOfResize DoResize() override;
    Standard_Boolean DoMapping() const override { return Standard_True; }
    Standard_Boolean IsMapped() const override;
    void Map() const override;
    void Unmap() const override;
    Standard_Real Ratio() const override;
    void Position(Standard_Integer &x1, Standard_Integer &y1, Standard_Integer &x2, Standard_Integer &y2) const override;
    void Size(Standard_Integer &width, Standard_Integer &height) const override;
    Standard_Real DevicePixelRatio() const override;

private:
    QWidget *m_widget;
    int m_left = 0;
    int m_top = 0;
    int m_right = 0;
    int m_bottom = 0;
};

namespace occ {

// The one connection to the X server that every view of the process draws through.
Handle(Aspect_DisplayConnection) displayConnection();

// A window that is never shown: the view renders into it and the widget paints
// the rendered image, on platforms that give a widget no X window.
Handle(Aspect_Window) createHiddenWindow(int width, int height);
void resizeHiddenWindow(const Handle(Aspect_Window) &window, int width, int height);

} // namespace occ
