#pragma once

#include <QWidget>

class QGridLayout;
class QSplitter;

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
    virtual void autoFit() = 0;
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
    void autoFit() override {}
    void setAutoFit(bool) override {}
};

// A page of the document window: its view, and the controls beside it in a splitter
// whose state outlives the page.
class PageViewer : public QWidget
{
    Q_OBJECT
public:
    ~PageViewer() override;

    virtual ZoomableView *zoomableView() = 0;

signals:
    void aboutToUpdateUI();

protected:
    PageViewer(const QString &name, QWidget *parent);

    QGridLayout *viewLayout() const { return m_viewLayout; }
    QGridLayout *controlLayout() const { return m_controlLayout; }
    // At the end of the subclass's constructor, once both sides hold their widgets.
    void restoreSplitterState();

private:
    QString settingsKey() const;

    QSplitter *m_splitter;
    QGridLayout *m_viewLayout;
    QGridLayout *m_controlLayout;
};
