#include "ui/PageViewer.h"

#include <QGridLayout>
#include <QSettings>
#include <QSplitter>
#include <QVBoxLayout>

namespace {

QGridLayout *sideLayout(QWidget *side)
{
    auto *grid = new QGridLayout(side);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(0);
    return grid;
}

} // namespace

PageViewer::PageViewer(const QString &name, QWidget *parent)
    : QWidget(parent)
    , m_splitter(new QSplitter(Qt::Horizontal, this))
{
    setObjectName(name);
    // A page takes the width the window gives it; its splitter shares it out.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_splitter->setObjectName(QStringLiteral("splitter"));
    auto *view = new QWidget(m_splitter);
    view->setObjectName(QStringLiteral("widgetView"));
    auto *control = new QWidget(m_splitter);
    control->setObjectName(QStringLiteral("widgetControl"));
    m_viewLayout = sideLayout(view);
    m_controlLayout = sideLayout(control);
    m_splitter->setStretchFactor(0, 1);
    m_splitter->setStretchFactor(1, 0);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_splitter);
}

PageViewer::~PageViewer()
{
    QSettings().setValue(settingsKey(), m_splitter->saveState());
}

QString PageViewer::settingsKey() const
{
    return QStringLiteral("%1/SplitterState").arg(objectName());
}

void PageViewer::restoreSplitterState()
{
    if (!m_splitter->restoreState(QSettings().value(settingsKey()).toByteArray()))
        m_splitter->setSizes({200, 100});
}
