#include "document/Document.h"

#include <QDebug>
#include <QFile>
#include <QQmlError>
#include <QMetaEnum>

#include "QmlScripting/ConfigObject.h"
#include "QmlScripting/JSEngine.h"
#include "base/FileWatcher.h"
#include "base/Numeric.h"
#include "base/ScriptConsole.h"
#include "document/Airgap.h"
#include "document/CommandSetPropertyObject.h"
#include "document/UndoStack.h"
#include "geometry/PoleArrangement.h"
#include "geometry/Rotor.h"
#include "geometry/RotorItem.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "meshing/Mesh.h"
#include "winding/WindingObject.h"

// The document's side of the configuration script: the variables of `config`
// drive the elements, and the elements write their changes back.

namespace {

// Scripts may give an enumeration by its number or by its key.
template <typename Enum>
Enum toEnum(const QVariant &value)
{
    if (value.type() == QVariant::String) {
        bool ok = false;
        const int number = QMetaEnum::fromType<Enum>().keyToValue(value.toString().toLatin1().constData(), &ok);
        if (ok)
            return Enum(number);
    }
    return Enum(value.toInt());
}

bool differs(const QVariant &a, const QVariant &b)
{
    const bool numbers = a.canConvert<double>() && b.canConvert<double>() && a.type() != QVariant::String
                      && b.type() != QVariant::String && a.type() != QVariant::Bool && b.type() != QVariant::Bool;
    if (numbers)
        return !Numeric::isZero(a.toDouble() - b.toDouble());
    return a != b;
}

// The config variables of the angular displacement of body `id` (1..3), by machine type.
QVector<int> displacementVariables(Machine::Type type, bool stator, int id)
{
    static const QVector<QVector<QVector<int>>> statorTable = {
        {{}, {}, {}},            // UnknownType
        {{1}, {}, {}},           // SR
        {{1}, {2}, {}},          // SRS
        {{1}, {2, 3}, {4}},      // SRSRS
        {{1, 2}, {}, {}},        // RSR
        {{1, 2}, {3, 4}, {}},    // RSRSR
    };
    static const QVector<QVector<QVector<int>>> rotorTable = {
        {{}, {}, {}},
        {{1}, {}, {}},
        {{1, 2}, {}, {}},
        {{1, 2}, {3, 4}, {}},
        {{1}, {2}, {}},
        {{1}, {2, 3}, {4}},
    };
    return (stator ? statorTable : rotorTable).at(type).at(id - 1);
}

} // namespace

void Document::buildConfigHandlers()
{
    auto handle = [this](const QString &key, std::function<void(const QVariant &)> apply) {
        m_handlers.insert(key, [apply](const QVariant &value) {
            apply(value);
            return true;
        });
    };
    handle(QStringLiteral("statorOuterDiameter"), [this](const QVariant &v) { m_stator->setOuterDiameter(v.toDouble()); });
    handle(QStringLiteral("statorInnerDiameter"), [this](const QVariant &v) { m_stator->setInnerDiameter(v.toDouble()); });
    handle(QStringLiteral("statorNumberSlots"), [this](const QVariant &v) { m_stator->setNumberSlots(v.toInt()); });
    handle(QStringLiteral("statorType"),
           [this](const QVariant &v) { m_stator->setTypeMiddleItem(toEnum<MotorElement::MiddleType>(v)); });
    handle(QStringLiteral("rotorOuterDiameter"), [this](const QVariant &v) { m_rotor->setOuterDiameter(v.toDouble()); });
    handle(QStringLiteral("rotorInnerDiameter"), [this](const QVariant &v) { m_rotor->setInnerDiameter(v.toDouble()); });
    handle(QStringLiteral("rotorNumberPolePairs"),
           [this](const QVariant &v) { m_rotor->setNumberPolePairs(v.toInt()); });
    handle(QStringLiteral("rotorType"),
           [this](const QVariant &v) { m_rotor->setTypeMiddleItem(toEnum<MotorElement::MiddleType>(v)); });
    for (int id = 1; id <= 3; ++id) {
        handle(QStringLiteral("statorHeight%1").arg(id),
               [this, id](const QVariant &v) { m_stator->items().at(id - 1)->setHeight(v.toDouble()); });
        handle(QStringLiteral("rotorHeight%1").arg(id),
               [this, id](const QVariant &v) { m_rotor->items().at(id - 1)->setHeight(v.toDouble()); });
    }
    for (int gap = 1; gap <= 4; ++gap) {
        handle(QStringLiteral("statorAngularDisplacement%1").arg(gap),
               [this, gap](const QVariant &v) { m_stator->setItemAngularDisplacement(gap, v.toDouble()); });
        handle(QStringLiteral("rotorAngularDisplacement%1").arg(gap),
               [this, gap](const QVariant &v) { m_rotor->setItemAngularDisplacement(gap, v.toDouble()); });
    }
    handle(QStringLiteral("poleArrangement"), [this](const QVariant &v) {
        m_rotor->setPoleArrangement(v.type() == QVariant::String ? PoleArrangement::fromText(v.toString())
                                                                 : PoleArrangement::Type(v.toInt()));
    });
    for (int layout = 2; layout <= 4; ++layout) {
        // The flags are read from the script when the poles are built.
        handle(QStringLiteral("poleMirrorUD%1").arg(layout), [this](const QVariant &) {
            m_rotor->clearCashPieces();
            emit m_rotor->poleMirrorUDChanged();
            emit m_rotor->polePiecesChanged();
        });
        handle(QStringLiteral("poleRotatePolePitch%1").arg(layout), [this](const QVariant &) {
            m_rotor->clearCashPieces();
            emit m_rotor->poleRotatePolePitchChanged();
            emit m_rotor->polePiecesChanged();
        });
        handle(QStringLiteral("layoutReverse%1").arg(layout), [this, layout](const QVariant &v) {
            QVector<bool> reverse = m_winding->reverseLayersLayouts();
            if (reverse.size() < layout - 1)
                reverse.resize(layout - 1);
            reverse[layout - 2] = v.toBool();
            m_winding->setReverseLayersLayouts(reverse);
        });
        handle(QStringLiteral("layoutNew%1").arg(layout), [](const QVariant &) {});
        handle(QStringLiteral("layoutNewLayer%1").arg(layout), [](const QVariant &) {});
    }
    handle(QStringLiteral("windingType"), [this](const QVariant &v) { m_winding->setType(toEnum<Winding::Type>(v)); });
    handle(QStringLiteral("windingLayers"), [this](const QVariant &v) { m_winding->setNumberLayers(v.toInt()); });
    handle(QStringLiteral("windingLayersOrientation"), [this](const QVariant &v) {
        m_winding->setLayersOrientation(toEnum<Winding::LayersOrientation>(v));
    });
    handle(QStringLiteral("statorConnection"), [this](const QVariant &v) {
        m_winding->setConnection(v.type() == QVariant::String ? v.toString()
                                                              : Winding::toString(Winding::Connection(v.toInt())));
    });
    handle(QStringLiteral("meshHorizontalSymmetry"),
           [this](const QVariant &v) { m_mesh->setHorizontalSymmetry(v.toBool()); });
}

void Document::writeBackToConfig(const QString &name, const QVariant &value)
{
    const QVariant present = m_config->property(name.toLatin1().constData());
    if (present.isValid() && differs(present, value))
        m_config->setProperty(name.toLatin1().constData(), value);
}

void Document::connectConfigWriteBack()
{
    connect(m_stator, &Stator::outerDiameterChanged, this,
            [this](double d) { writeBackToConfig(QStringLiteral("statorOuterDiameter"), d); });
    connect(m_stator, &Stator::innerDiameterChanged, this,
            [this](double d) { writeBackToConfig(QStringLiteral("statorInnerDiameter"), d); });
    connect(m_stator, &Stator::numberSlotsChanged, this,
            [this](uint n) { writeBackToConfig(QStringLiteral("statorNumberSlots"), int(n)); });
    connect(m_stator, &Stator::typeMiddleItemChanged, this,
            [this](MotorElement::MiddleType t) { writeBackToConfig(QStringLiteral("statorType"), int(t)); });
    connect(m_rotor, &Rotor::outerDiameterChanged, this,
            [this](double d) { writeBackToConfig(QStringLiteral("rotorOuterDiameter"), d); });
    connect(m_rotor, &Rotor::innerDiameterChanged, this,
            [this](double d) { writeBackToConfig(QStringLiteral("rotorInnerDiameter"), d); });
    connect(m_rotor, &Rotor::numberPolePairsChanged, this,
            [this](int n) { writeBackToConfig(QStringLiteral("rotorNumberPolePairs"), n); });
    connect(m_rotor, &Rotor::typeMiddleItemChanged, this,
            [this](MotorElement::MiddleType t) { writeBackToConfig(QStringLiteral("rotorType"), int(t)); });
    connect(m_rotor, &Rotor::poleArrangementChanged, this,
            [this](PoleArrangement::Type t) { writeBackToConfig(QStringLiteral("poleArrangement"), int(t)); });
    for (int id = 1; id <= 3; ++id) {
        connectItemWriteBack(m_stator->items().at(id - 1), QStringLiteral("stator"), id);
        connectItemWriteBack(m_rotor->items().at(id - 1), QStringLiteral("rotor"), id);
    }
    connect(m_winding, &WindingObject::typeChanged, this,
            [this] { writeBackToConfig(QStringLiteral("windingType"), int(m_winding->type())); });
    connect(m_winding, &WindingObject::numberLayersChanged, this,
            [this] { writeBackToConfig(QStringLiteral("windingLayers"), m_winding->numberLayers()); });
    connect(m_winding, &WindingObject::layersOrientationChanged, this, [this] {
        writeBackToConfig(QStringLiteral("windingLayersOrientation"), int(m_winding->layersOrientation()));
    });
    connect(m_winding, &WindingObject::connectionChanged, this,
            [this] {
                writeBackToConfig(QStringLiteral("statorConnection"),
                                  int(Winding::fromString(m_winding->connection(), Winding::UnknownConnection)));
            });
}

void Document::connectItemWriteBack(MotorItem *item, const QString &element, int id)
{
    connect(item, &MotorItem::heightChanged, this,
            [this, element, id](double h) { writeBackToConfig(QStringLiteral("%1Height%2").arg(element).arg(id), h); });
    connect(item, &MotorItem::angularDisplacementChanged, this, [this, element, id](double angle) {
        for (int gap : displacementVariables(m_machineType, element == QLatin1String("stator"), id))
            writeBackToConfig(QStringLiteral("%1AngularDisplacement%2").arg(element).arg(gap), angle);
    });
}

void Document::configVariableChanged(const QString &name, const QVariant &value)
{
    const auto handler = m_handlers.constFind(name);
    if (handler == m_handlers.constEnd()) {
        qWarning().noquote() << "Warning:" << QStringLiteral("Unprocessed config variable: %1").arg(name);
        return;
    }
    (*handler)(value);
}

void Document::setConfigVariable(QString propName, QVariant propValue)
{
    if (!propValue.isValid())
        return;
    const QVariantMap script = m_config->scriptProperties();
    if (m_updatingConfig) {
        // Values that the script's own update computed: mirrored without a record.
        for (auto it = script.cbegin(); it != script.cend(); ++it) {
            const QVariant present = m_config->property(it.key().toLatin1().constData());
            if (present.isValid() && present != it.value())
                m_config->setProperty(it.key().toLatin1().constData(), it.value());
        }
        return;
    }
    const QByteArray name = propName.toLatin1();
    const QVariant present = m_config->property(name.constData());
    if (!present.isValid() || present == propValue)
        return;
    auto *command = new CommandSetPropertyObject(m_config, name, propValue, present);
    // What the script changed along with this variable is undone with it.
    for (auto it = script.cbegin(); it != script.cend(); ++it) {
        if (it.key() == propName)
            continue;
        const QByteArray key = it.key().toLatin1();
        const QVariant old = m_config->property(key.constData());
        if (old.isValid() && old != it.value())
            new CommandSetPropertyObject(m_config, key, it.value(), old, command);
    }
    if (propName == QLatin1String("windingLayers") || propName == QLatin1String("windingLayersOrientation"))
        new CommandSetPropertyObject(m_winding, "coilSpan", m_winding->coilSpan(), m_winding->coilSpan(), command);
    execCommand(command);
}

void Document::configFailure(const QString &text)
{
    qCritical().noquote() << "Error:" << text;
    m_console->error(text);
}

void Document::engineException(const QList<QQmlError> &errors)
{
    for (const QQmlError &error : errors) {
        qCritical().noquote() << "Error:" << error.toString();
        m_console->error(error.toString());
    }
}

void Document::setConfigScriptFile(const QString &path)
{
    if (!m_configScriptFile.isEmpty())
        m_fileWatcher->removePath(m_configScriptFile);
    m_configScriptFile = path;
    m_fileWatcher->addPath(path);
}

void Document::loadConfigScript()
{
    m_configIsLoaded = false;
    m_config->setScriptObject(QJSValue(QJSValue::UndefinedValue), nullptr);
    const QString path = m_configScriptFile;
    QFile file(path);
    if (!file.exists()) {
        configFailure(tr("File %1 does not exist").arg(path));
        emit configLoaded(false);
        return;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        configFailure(tr("Can't open file %1 for reading").arg(path));
        emit configLoaded(false);
        return;
    }
    const QString text = QString::fromUtf8(file.readAll());
    file.close();

    m_engine = std::make_unique<JSEngine>(this, nullptr);
    connect(m_engine.get(), &QQmlEngine::warnings, this, &Document::engineException);
    m_engine->installObject(QStringLiteral("console"), m_console);

    const QJSValue result = m_engine->evaluate(text, path, 1);
    if (result.isError()) {
        configFailure(JSEngine::errorString(result));
        emit configLoaded(false);
        return;
    }
    if (!m_engine->globalObject().property(QStringLiteral("config")).isObject()) {
        configFailure(tr("Script does not contain variable 'config'"));
        emit configLoaded(false);
        return;
    }
    // Every later assignment to a key of config reaches the document.
    const QJSValue proxy = m_engine->evaluate(QStringLiteral(
        "config = new Proxy(config, { set(target, prop, val) { let v = target[prop]; target[prop] = val; "
        "if(v !== val) { motor.setConfigVariable(prop, val); } return true; } });"));
    if (proxy.isError()) {
        configFailure(JSEngine::errorString(proxy));
        emit configLoaded(false);
        return;
    }
    m_config->setScriptObject(m_engine->globalObject().property(QStringLiteral("config")), m_engine.get());
    m_configIsLoaded = true;
    emit configLoaded(true);
}

void Document::updateConfig()
{
    if (!m_configIsLoaded)
        return;
    QJSValue config = m_engine->globalObject().property(QStringLiteral("config"));
    QJSValue update = config.property(QStringLiteral("update"));
    if (!update.isCallable()) {
        configFailure(tr("No found function config.update()"));
        return;
    }
    update.callWithInstance(config);
}

void Document::applyConfigToElements()
{
    const QVariantMap values = m_config->scriptProperties();
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        configVariableChanged(it.key(), it.value());
}

void Document::reloadConfigScript()
{
    m_console->info(tr("Script '%1' changed").arg(m_configScriptFile));
    const QVariantMap saved = m_config->properties();
    {
        const QSignalBlocker blocker(this);
        loadConfigScript();
    }
    if (m_configIsLoaded && !saved.isEmpty()) {
        {
            const QSignalBlocker blocker(this);
            m_updatingConfig = true;
            updateConfig();
            m_updatingConfig = false;
        }
        // The user's values win over the new script's defaults.
        QJSValue config = m_engine->globalObject().property(QStringLiteral("config"));
        for (auto it = saved.cbegin(); it != saved.cend(); ++it) {
            if (it.value().isValid())
                config.setProperty(it.key(), m_engine->toScriptValue(it.value()));
        }
    }
    emit configLoaded(m_configIsLoaded);
}

void Document::pushConfigToScript()
{
    static const QStringList keptByTheScript = {
        QStringLiteral("layoutNew2"),           QStringLiteral("layoutNew3"),
        QStringLiteral("layoutNew4"),           QStringLiteral("layoutNewLayer2"),
        QStringLiteral("layoutNewLayer3"),      QStringLiteral("layoutNewLayer4"),
        QStringLiteral("layoutMirrorUDLayers2"), QStringLiteral("layoutMirrorUDLayers3"),
        QStringLiteral("layoutMirrorUDLayers4"), QStringLiteral("layoutReverse2"),
        QStringLiteral("layoutReverse3"),       QStringLiteral("layoutReverse4"),
        QStringLiteral("poleMirrorUD2"),        QStringLiteral("poleMirrorUD3"),
        QStringLiteral("poleMirrorUD4"),        QStringLiteral("poleRotatePolePitch2"),
        QStringLiteral("poleRotatePolePitch3"), QStringLiteral("poleRotatePolePitch4"),
        QStringLiteral("meshHorizontalSymmetry")};
    QVariantMap values = m_config->properties();
    for (const QString &key : keptByTheScript)
        values.remove(key);
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        m_config->setScriptProperty(it.key(), m_config->property(it.key().toLatin1().constData()));
}
