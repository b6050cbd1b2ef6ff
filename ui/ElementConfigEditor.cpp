#include "ui/ElementConfigEditor.h"

#include <QDebug>
#include <QGridLayout>
#include <QLabel>
#include <QQmlEngine>
#include <QVBoxLayout>
#include <algorithm>

#include "QmlScripting/JSEngine.h"
#include "QmlScripting/QmlWidgets.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "base/ScriptConsole.h"
#include "document/Document.h"
#include "ui/ScriptPanelHost.h"

namespace {

template <typename Icon>
bool hasVisible(const QWidget *panel)
{
    const QList<Icon *> icons = panel->findChildren<Icon *>();
    return std::any_of(icons.cbegin(), icons.cend(), [](const Icon *icon) { return icon->isVisible(); });
}

} // namespace

ElementConfigEditor::ElementConfigEditor(Document *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
    , m_host(new ScriptPanelHost(this))
{
    setObjectName(QStringLiteral("ElementConfigEditor"));
    m_host->setObjectName(QStringLiteral("panelConfigEditor"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_host);
    connect(m_document, &Document::configLoaded, this, &ElementConfigEditor::createUI);
    connect(m_document, &Document::readonlyChanged, this, &ElementConfigEditor::refresh);
    connect(m_document, &Document::slaveChanged, this, &ElementConfigEditor::refresh);
    connect(m_document, &Document::dataSimulationChanged, this, &ElementConfigEditor::refresh);
    connect(m_document->analysis(), &MagnetostaticAnalysis::runningChanged, this, &ElementConfigEditor::refresh);
}

void ElementConfigEditor::createUI()
{
    m_host->clear();
    if (!m_document->isConfigLoaded()) {
        refresh();
        return;
    }
    callPanelFunction();
    if (!m_host->layout())
        (new QGridLayout(m_host))->setContentsMargins(0, 0, 0, 0);
    if (m_host->editors().isEmpty())
        m_host->layout()->addWidget(new QLabel(tr("No widgets for editing"), m_host));
    m_host->setWheelGuarded(true);
    refresh();
}

void ElementConfigEditor::callPanelFunction()
{
    JSEngine *engine = m_document->engine();
    const QJSValue host = engine->newQObject(m_host);
    QQmlEngine::setObjectOwnership(m_host, QQmlEngine::CppOwnership);
    QJSValue create = engine->globalObject().property(panelFunctionName());
    if (create.isUndefined()) {
        scriptFailure(tr("Not found function '%1'").arg(panelFunctionName()));
        return;
    }
    const QJSValue result = create.call({host});
    if (result.isError())
        scriptFailure(JSEngine::errorString(result));
}

void ElementConfigEditor::updateConfigUI()
{
    if (!m_document->isConfigLoaded())
        return;
    QJSValue object = m_document->engine()->globalObject().property(panelObjectName());
    if (object.isUndefined() || object.isNull()) {
        scriptFailure(tr("Not found '%1'").arg(panelObjectName()));
        return;
    }
    const QJSValue result = object.property(QStringLiteral("updateUI")).callWithInstance(object);
    if (result.isError())
        scriptFailure(JSEngine::errorString(result));
}

bool ElementConfigEditor::hasExclamation() const
{
    return hasVisible<QmlExclamationIcon>(m_host);
}

bool ElementConfigEditor::hasWarning() const
{
    return hasVisible<QmlWarningIcon>(m_host);
}

void ElementConfigEditor::refresh()
{
    m_host->setEnabled(!m_document->isReadonly() && !m_document->isSlave() && !m_document->analysis()->isRunning()
                       && !m_document->isLockedBySimulationData());
}

void ElementConfigEditor::scriptFailure(const QString &message) const
{
    qCritical().noquote() << "Error:" << message;
    m_document->console()->error(message);
}

StatorConfigEditor::StatorConfigEditor(Document *document, QWidget *parent)
    : ElementConfigEditor(document, parent)
{
}

RotorConfigEditor::RotorConfigEditor(Document *document, QWidget *parent)
    : ElementConfigEditor(document, parent)
{
}

MeshConfigEditor::MeshConfigEditor(Document *document, QWidget *parent)
    : ElementConfigEditor(document, parent)
{
}

WindingConfigEditor::WindingConfigEditor(Document *document, QWidget *parent)
    : ElementConfigEditor(document, parent)
{
}
