#include "ui/Viewer/View.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <AIS_TextLabel.hxx>
#include <Aspect_ScrollDelta.hxx>
#include <Graphic3d_Camera.hxx>
#include <Image_PixMap.hxx>
#include <OpenGl_GraphicDriver.hxx>
#include <V3d_DirectionalLight.hxx>

#include "ui/Viewer/OcctWindow.h"

namespace occ {

namespace {

const Quantity_Color background(245 / 255.0, 245 / 255.0, 245 / 255.0, Quantity_TOC_sRGB);

Handle(Graphic3d_GraphicDriver) graphicDriver()
{
    static const Handle(Graphic3d_GraphicDriver) driver = new OpenGl_GraphicDriver(displayConnection(), true);
    return driver;
}

Aspect_VKeyMouse mouseButtons(Qt::MouseButtons buttons)
{
    Aspect_VKeyMouse result = Aspect_VKeyMouse_NONE;
    if (buttons & Qt::LeftButton)
        result |= Aspect_VKeyMouse_LeftButton;
    if (buttons & Qt::MiddleButton)
        result |= Aspect_VKeyMouse_MiddleButton;
    if (buttons & Qt::RightButton)
        result |= Aspect_VKeyMouse_RightButton;
    return result;
}

Aspect_VKeyFlags keyFlags(Qt::KeyboardModifiers modifiers)
{
    Aspect_VKeyFlags result = Aspect_VKeyFlags_NONE;
    if (modifiers & Qt::ShiftModifier)
        result |= Aspect_VKeyFlags_SHIFT;
    if (modifiers & Qt::ControlModifier)
        result |= Aspect_VKeyFlags_CTRL;
    if (modifiers & Qt::AltModifier)
        result |= Aspect_VKeyFlags_ALT;
    return result;
}

QString rulerText(double value)
{
    return (value > 0.0 ? QStringLiteral("+") : QString()) + QString::number(value, 'f', 3);
}

QImage toImage(const Image_PixMap &pixmap)
{
    const QImage wrapped(pixmap.Data(), int(pixmap.Width()), int(pixmap.Height()), int(pixmap.SizeRowBytes()),
                         QImage::Format_RGB888);
    // The pixmap is stored bottom up.
    return pixmap.IsTopDown() ? wrapped.copy() : wrapped.mirrored();
}

} // namespace

View::View(QWidget *parent)
    : QWidget(parent)
{
    if (drawsOnScreen()) {
        setAttribute(Qt::WA_PaintOnScreen);
        setAttribute(Qt::WA_NoSystemBackground);
    }
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setMinimumSize(64, 64);

    m_viewer = new V3d_Viewer(graphicDriver());
    m_viewer->SetDefaultLights();
    m_viewer->SetLightOn();
    m_context = new AIS_InteractiveContext(m_viewer);
    m_context->SetDisplayMode(AIS_Shaded, Standard_False);
    m_context->SetPixelTolerance(4);
}

View::~View()
{
    m_context->RemoveAll(Standard_False);
    if (!m_view.IsNull())
        m_view->Remove();
}

bool View::isAvailable()
{
    return QGuiApplication::platformName() == QLatin1String("xcb") || !qEnvironmentVariableIsEmpty("DISPLAY");
}

bool View::drawsOnScreen() const
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

// The view is made with its window: a view that never had one cannot be removed
// cleanly from the driver.
bool View::ensureWindow()
{
    if (!m_view.IsNull())
        return true;
    if (!isVisible() && !testAttribute(Qt::WA_WState_Created))
        return false;
    m_view = m_viewer->CreateView();
    m_view->SetBackgroundColor(background);
    m_view->SetImmediateUpdate(Standard_False);
    if (drawsOnScreen())
        m_view->SetWindow(new OcctWindow(this));
    else
        m_view->SetWindow(createHiddenWindow(width(), height()));
    m_view->MustBeResized();
    axo();
    fitAll();
    return true;
}

QPaintEngine *View::paintEngine() const
{
    return drawsOnScreen() ? nullptr : QWidget::paintEngine();
}

void View::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    ensureWindow();
}

void View::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (m_view.IsNull())
        return;
    if (!drawsOnScreen())
        resizeHiddenWindow(m_view->Window(), width(), height());
    m_view->Window()->DoResize();
    m_view->MustBeResized();
    if (m_zoomAutoFit)
        fitAll();
}

void View::paintEvent(QPaintEvent *)
{
    if (!ensureWindow())
        return;
    if (drawsOnScreen()) {
        m_view->InvalidateImmediate();
        FlushViewEvents(m_context, m_view, Standard_True);
        return;
    }
    FlushViewEvents(m_context, m_view, Standard_True);
    QPainter painter(this);
    painter.drawImage(0, 0, renderImage());
}

QImage View::renderImage()
{
    if (!ensureWindow())
        return QImage();
    Image_PixMap pixmap;
    V3d_ImageDumpOptions options;
    options.Width = qMax(width(), 1);
    options.Height = qMax(height(), 1);
    options.BufferType = Graphic3d_BT_RGB;
    if (!m_view->ToPixMap(pixmap, options))
        return QImage();
    return toImage(pixmap);
}

void View::handleViewRedraw(const Handle(AIS_InteractiveContext) &context, const Handle(V3d_View) &view)
{
    AIS_ViewController::handleViewRedraw(context, view);
    if (myToAskNextFrame)
        update();
}

void View::OnSelectionChanged(const Handle(AIS_InteractiveContext) &, const Handle(V3d_View) &)
{
    emit selectionChanged();
}

void View::userMovedView()
{
    setZoomAutoFit(false);
}

void View::setZoomAutoFit(bool on)
{
    if (m_zoomAutoFit == on)
        return;
    m_zoomAutoFit = on;
    if (on)
        fitAll();
    emit zoomAutoFitChanged(on);
}

void View::setModeRuler(bool on)
{
    if (m_modeRuler == on)
        return;
    m_modeRuler = on;
    if (!on) {
        for (const auto &label : {m_rulerX, m_rulerY}) {
            if (!label.IsNull())
                m_context->Remove(label, Standard_False);
        }
        update();
    }
}

void View::mousePressEvent(QMouseEvent *event)
{
    const Graphic3d_Vec2i position(event->pos().x(), event->pos().y());
    if (UpdateMouseButtons(position, mouseButtons(event->buttons()), keyFlags(event->modifiers()), false))
        update();
}

void View::mouseReleaseEvent(QMouseEvent *event)
{
    const Graphic3d_Vec2i position(event->pos().x(), event->pos().y());
    if (UpdateMouseButtons(position, mouseButtons(event->buttons()), keyFlags(event->modifiers()), false))
        update();
    unsetCursor();
}

void View::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() != Qt::NoButton)
        userMovedView();
    if (m_modeRuler)
        showRulerAt(event->pos());
    const Graphic3d_Vec2i position(event->pos().x(), event->pos().y());
    if (UpdateMousePosition(position, mouseButtons(event->buttons()), keyFlags(event->modifiers()), false))
        update();
}

void View::wheelEvent(QWheelEvent *event)
{
    userMovedView();
    const QPoint point = event->position().toPoint();
    const Graphic3d_Vec2i position(point.x(), point.y());
    if (UpdateZoom(Aspect_ScrollDelta(position, event->angleDelta().y() / 8.0)))
        update();
}

void View::showRulerAt(const QPoint &position)
{
    if (m_view.IsNull())
        return;
    Standard_Real x = 0.0;
    Standard_Real y = 0.0;
    Standard_Real z = 0.0;
    m_view->Convert(position.x(), position.y(), x, y, z);
    // The second line one text row below the first, in the view's own units.
    Standard_Real belowX = 0.0;
    Standard_Real belowY = 0.0;
    Standard_Real belowZ = 0.0;
    m_view->Convert(position.x(), position.y() + fontMetrics().height(), belowX, belowY, belowZ);
    if (m_rulerX.IsNull()) {
        m_rulerX = new AIS_TextLabel();
        m_rulerY = new AIS_TextLabel();
    }
    m_rulerX->SetText(TCollection_ExtendedString(rulerText(x).toUtf8().constData(), Standard_True));
    m_rulerY->SetText(TCollection_ExtendedString(rulerText(y).toUtf8().constData(), Standard_True));
    m_rulerX->SetPosition(gp_Pnt(x, y, z));
    m_rulerY->SetPosition(gp_Pnt(belowX, belowY, belowZ));
    for (const auto &label : {m_rulerX, m_rulerY}) {
        if (m_context->IsDisplayed(label))
            m_context->Redisplay(label, Standard_False);
        else
            m_context->Display(label, Standard_False);
    }
    update();
}

void View::redraw()
{
    update();
}

void View::axo()
{
    if (m_view.IsNull())
        return;
    m_view->SetProj(V3d_XposYnegZpos);
    update();
}

void View::setShading()
{
    m_context->SetDisplayMode(AIS_Shaded, Standard_True);
    update();
}

void View::setWireframe()
{
    m_context->SetDisplayMode(AIS_WireFrame, Standard_True);
    update();
}

void View::fitAll(double margin)
{
    if (m_view.IsNull())
        return;
    m_view->FitAll(margin, Standard_False);
    update();
}

void View::fitAll()
{
    fitAll(0.01);
}

void View::zoomIn()
{
    userMovedView();
    if (!m_view.IsNull())
        m_view->SetZoom(1.25);
    update();
}

void View::zoomOut()
{
    userMovedView();
    if (!m_view.IsNull())
        m_view->SetZoom(0.8);
    update();
}

} // namespace occ
