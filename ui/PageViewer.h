#pragma once

#include <QWidget>

#include "ui/Controls/ZoomableView.h"

class QGridLayout;
class QSplitter;

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
