#pragma once

// What a page shows, as far as the zoom actions of the main window are concerned.
class ZoomableView
{
public:
    virtual ~ZoomableView() = default;

    virtual bool isZoomable() const = 0;
    virtual bool canZoomIn() const = 0;
    virtual bool canZoomOut() const = 0;
    virtual void zoomIn() = 0;
    virtual void zoomOut() = 0;
    virtual bool canAutoFit() const = 0;
    // Whether the view fits itself to its content after each change.
    virtual bool isAutoFit() const = 0;
    virtual void setAutoFit(bool autoFit) = 0;
};

// A view without zoom: every zoom action stays disabled.
class NoZoomableView : public ZoomableView
{
public:
    bool isZoomable() const override { return false; }
    bool canZoomIn() const override { return false; }
    bool canZoomOut() const override { return false; }
    void zoomIn() override {}
    void zoomOut() override {}
    bool canAutoFit() const override { return false; }
    bool isAutoFit() const override { return false; }
    void setAutoFit(bool) override {}
};
