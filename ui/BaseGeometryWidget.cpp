#include "ui/BaseGeometryWidget.h"

#include <QDebug>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMetaProperty>
#include <QPushButton>
#include <QQmlEngine>
#include <QSettings>
#include <QTextBrowser>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>
#include <cmath>

#include "QmlScripting/JSEngine.h"
#include "QmlScripting/ScriptDescribeList.h"
#include "QmlScripting/ScriptObject.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "document/CommandSetPropertyObject.h"
#include "geometry/MotorElement.h"
#include "ui/Controls/NumberEdit.h"
#include "ui/GeometrySourceWidget.h"
#include "ui/MessageBox.h"
#include "ui/ScriptPanelHost.h"

namespace {

const QString loadedStyle = QStringLiteral("QWidget#panelGeometryEditor { background-color: rgb(250, 250, 250);}");

// User lengths keep 5 decimals, rounded half away from zero.
QVariant roundedValue(const QVariant &value)
{
    if (value.type() != QVariant::Double)
        return value;
    return std::round(value.toDouble() * 1e5) / 1e5;
}

// A number field keeps its stored value until its owner answers: the typed number is the new one.
QVariant editedValue(QWidget *widget, const QMetaProperty &user)
{
    if (auto *edit = qobject_cast<NumberEdit *>(widget))
        return edit->parsedText();
    return user.read(widget);
}

int applicabilityOf(const ScriptDescribeList &catalogue, const QString &script)
{
    return script.isEmpty() ? Machine::AnyType : catalogue.findScript(script).applicability();
}

} // namespace

BaseGeometryWidget::BaseGeometryWidget(MotorElement *element, Document::Mode editMode,
                                       const ScriptDescribeList &catalogue, const MotorElement *otherElement,
                                       const ScriptDescribeList &otherCatalogue, const Texts &texts, QWidget *parent)
    : QWidget(parent)
    , m_element(element)
    , m_document(element->document())
    , m_editMode(editMode)
    , m_catalogue(catalogue)
    , m_otherElement(otherElement)
    , m_otherCatalogue(otherCatalogue)
    , m_texts(texts)
{
    setObjectName(QStringLiteral("ElementGeometryWidget"));
    createForm();

    connect(m_element, &MotorElement::scriptLoaded, this, &BaseGeometryWidget::recreateUI);
    connect(m_document, &Document::documentLoaded, this, &BaseGeometryWidget::recreateUI);
    connect(m_element, &MotorElement::scriptPropertyChanged, this, &BaseGeometryWidget::scriptPropertyChanged);
    connect(m_document, &Document::modeChanged, this, &BaseGeometryWidget::refresh);
    connect(m_document, &Document::readonlyChanged, this, &BaseGeometryWidget::refresh);
    connect(m_document, &Document::slaveChanged, this, &BaseGeometryWidget::refresh);
    connect(m_document, &Document::dataSimulationChanged, this, &BaseGeometryWidget::refresh);
    connect(m_document->analysis(), &MagnetostaticAnalysis::runningChanged, this, &BaseGeometryWidget::refresh);
    connect(m_document, &Document::machineTypeChanged, m_source, &GeometrySourceWidget::setMachineType);
    connect(m_source, &GeometrySourceWidget::scriptChosen, this, &BaseGeometryWidget::chooseScript);
    connect(m_buttonEdit, &QToolButton::clicked, this, &BaseGeometryWidget::toggleEditMode);
    connect(m_buttonGuide, &QToolButton::clicked, this, &BaseGeometryWidget::showGuide);
}

void BaseGeometryWidget::createForm()
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_source = new GeometrySourceWidget(m_texts.title, m_catalogue, this);
    m_source->setObjectName(QStringLiteral("geometrySource"));
    m_source->setMachineType(m_document->machineType());
    layout->addWidget(m_source);

    m_host = new ScriptPanelHost(this);
    m_host->setObjectName(QStringLiteral("panelGeometryEditor"));
    layout->addWidget(m_host);

    auto *buttons = new QHBoxLayout;
    m_buttonEdit = new QToolButton(this);
    m_buttonEdit->setObjectName(QStringLiteral("buttonEdit"));
    m_buttonEdit->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    buttons->addWidget(m_buttonEdit);
    m_hint = new QWidget(this);
    m_hint->setObjectName(QStringLiteral("widgetHint"));
    auto *hintLayout = new QHBoxLayout(m_hint);
    hintLayout->setContentsMargins(0, 0, 0, 0);
    auto *hintLabel = new QLabel(tr("<< Click this button to change parameters above"), m_hint);
    hintLabel->setToolTip(m_texts.hint);
    hintLayout->addWidget(hintLabel);
    auto *buttonHide = new QPushButton(tr("Don't show this message again"), m_hint);
    buttonHide->setObjectName(QStringLiteral("buttonHideHint"));
    hintLayout->addWidget(buttonHide);
    buttons->addWidget(m_hint);
    buttons->addStretch();
    m_buttonGuide = new QToolButton(this);
    m_buttonGuide->setObjectName(QStringLiteral("buttonGuide"));
    m_buttonGuide->setText(tr("Guide"));
    m_buttonGuide->setToolTip(tr("Show user guide for this geometry"));
    buttons->addWidget(m_buttonGuide);
    layout->addLayout(buttons);
    layout->addStretch();

    connect(buttonHide, &QPushButton::clicked, this, [this] {
        QSettings().setValue(m_texts.hideHintKey, true);
        refresh();
    });
}

void BaseGeometryWidget::recreateUI()
{
    m_host->clear();
    m_source->setCurrentScript(m_element->script());
    m_hasEditors = false;
    if (!m_element->isScriptLoaded()) {
        refresh();
        return;
    }
    if (!callPanelFunction()) {
        // What the script made before it failed edits nothing.
        m_host->clear();
        refresh();
        return;
    }
    m_hasEditors = bindEditors() > 0;
    if (!m_host->layout())
        (new QGridLayout(m_host))->setContentsMargins(6, 0, 6, 6);
    if (!m_hasEditors)
        m_host->layout()->addWidget(new QLabel(tr("No editor widgets"), m_host));
    m_host->setWheelGuarded(true);
    refresh();
}

bool BaseGeometryWidget::callPanelFunction()
{
    const std::lock_guard locker(m_element->engineMutex());
    JSEngine *engine = m_element->engine();
    const QJSValue host = engine->newQObject(m_host);
    QQmlEngine::setObjectOwnership(m_host, QQmlEngine::CppOwnership);
    QJSValue create = engine->globalObject().property(m_texts.panelFunction);
    if (create.isUndefined()) {
        scriptFailure(tr("Not found function %1").arg(m_texts.panelFunction));
        return false;
    }
    QJSValue result;
    try {
        result = create.call({host});
    } catch (...) {
        const QString message = tr("Critical error script engine");
        qCritical().noquote() << message;
        m_element->console()->error(message);
        return false;
    }
    if (result.isError()) {
        scriptFailure(JSEngine::errorString(result));
        return false;
    }
    return true;
}

int BaseGeometryWidget::bindEditors()
{
    const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("widgetVariableChanged()"));
    int count = 0;
    for (QWidget *widget : m_host->editors()) {
        const QString name = widget->objectName();
        const QMetaProperty user = widget->metaObject()->userProperty();
        if (!user.isReadable() || !user.hasNotifySignal()) {
            qCritical().noquote() << m_texts.noUserProperty << name << "has not user property";
            continue;
        }
        connect(widget, user.notifySignal(), this, slot);
        ++count;
    }
    return count;
}

void BaseGeometryWidget::widgetVariableChanged()
{
    auto *widget = qobject_cast<QWidget *>(sender());
    if (!widget)
        return;
    const QString name = widget->objectName();
    if (name.isEmpty()) {
        qCritical().noquote() << metaObject()->className() << "name is empty";
        return;
    }
    const QMetaProperty user = widget->metaObject()->userProperty();
    if (!user.isReadable()) {
        qCritical() << "Error: userProp is not valid";
        return;
    }
    if (m_document->isReadonly())
        return;
    const QVariant value = roundedValue(editedValue(widget, user));
    ScriptObject *script = m_element->scriptObject();
    const QByteArray property = name.toLatin1();
    const QVariant stored = script->property(property.constData());
    if (value == stored) {
        // The field shows the stored value again, not what was typed.
        const QSignalBlocker blocker(widget);
        user.write(widget, stored);
        return;
    }
    m_document->execCommand(new CommandSetPropertyObject(script, property, value));
}

void BaseGeometryWidget::scriptPropertyChanged(const QString &name, const QVariant &value)
{
    const QList<QWidget *> editors = m_host->findChildren<QWidget *>(name);
    if (editors.isEmpty()) {
        qCritical().noquote() << m_texts.editorNotFound << name;
    } else {
        if (editors.size() > 1)
            qCritical().noquote() << m_texts.editorsMultiplied << name;
        QWidget *editor = editors.first();
        const QMetaProperty user = editor->metaObject()->userProperty();
        // The editor shows the value without echoing it back as an edit: a field that
        // shows fewer digits would otherwise hand on its shortened text.
        const QSignalBlocker blocker(editor);
        if (user.isReadable())
            editor->setProperty(user.name(), value);
    }
    refresh();
}

bool BaseGeometryWidget::canEdit() const
{
    return !m_document->isReadonly() && !m_document->isSlave() && !m_document->analysis()->isRunning()
           && !m_document->isLockedBySimulationData();
}

void BaseGeometryWidget::refresh()
{
    const bool loaded = m_element->isScriptLoaded();
    const bool editMode = m_document->mode() == m_editMode;
    m_host->setVisible(loaded);
    m_buttonEdit->setVisible(loaded);
    m_buttonGuide->setVisible(loaded);
    m_host->setStyleSheet(loaded ? loadedStyle : QString());
    m_host->setEnabled(canEdit() && editMode);

    m_buttonEdit->setText(editMode ? m_texts.exitEdit : m_texts.edit);
    m_buttonEdit->setIcon(QIcon(editMode ? QStringLiteral(":/arrow_undo.png") : QStringLiteral(":/pencil.png")));
    m_buttonEdit->setToolTip(editMode ? QString() : m_texts.editToolTip);
    m_buttonEdit->setEnabled(!m_document->isReadonly() && m_hasEditors);
    m_buttonGuide->setEnabled(!m_catalogue.findScript(m_element->script())
                                   .manual(m_document->machineType(), m_element->typeMiddleItem())
                                   .isEmpty());

    const bool hidden = QSettings().value(m_texts.hideHintKey, false).toBool();
    m_hint->setVisible(!hidden && loaded && !editMode && !m_document->isSlave()
                       && !m_document->analysis()->isRunning());
    updateUI();
}

void BaseGeometryWidget::updateUI()
{
    if (!m_element->isScriptLoaded())
        return;
    const std::lock_guard locker(m_element->engineMutex());
    QJSValue object = m_element->engine()->globalObject().property(m_texts.panelObject);
    if (!object.isObject())
        return;
    const QJSValue result = object.property(QStringLiteral("updateUI")).callWithInstance(object);
    if (result.isError())
        scriptFailure(JSEngine::errorString(result));
}

void BaseGeometryWidget::chooseScript(const QString &script)
{
    if (script == m_element->script())
        return;
    if (!(applicabilityOf(m_catalogue, script) & applicabilityOf(m_otherCatalogue, m_otherElement->script()))) {
        MessageBox::critical(this, QCoreApplication::applicationName(),
                             tr("Not allowable combination of stator and rotor scripts"));
        m_source->setCurrentScript(m_element->script());
        return;
    }
    auto *command = new UndoCommand(m_texts.scriptCommand.arg(script));
    new CommandSetPropertyObject(m_element, "scriptProperties", m_element->scriptProperties(), command);
    new CommandSetPropertyObject(m_element, "script", script, command);
    m_document->execCommand(command);
}

void BaseGeometryWidget::toggleEditMode()
{
    m_document->setMode(m_document->mode() == m_editMode ? Document::GeometryMotor : m_editMode);
}

void BaseGeometryWidget::showGuide()
{
    const ScriptDescribe &entry = m_catalogue.findScript(m_element->script());
    const QString manual = entry.manual(m_document->machineType(), m_element->typeMiddleItem());
    auto *guide = new QTextBrowser(this);
    guide->setWindowFlag(Qt::Window);
    guide->setAttribute(Qt::WA_DeleteOnClose);
    guide->setWindowTitle(tr("User guide for '%1'").arg(entry.name()));
    guide->setSource(QUrl::fromLocalFile(manual));
    guide->resize(700, 800);
    guide->show();
}

void BaseGeometryWidget::scriptFailure(const QString &message) const
{
    qCritical().noquote() << "Error:" << message;
    m_element->console()->error(message);
}
