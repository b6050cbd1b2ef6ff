#include "document/Document.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSettings>
#include <QTimer>
#include "base/Tbb.h"

#include "QmlScripting/ConfigObject.h"
#include "QmlScripting/JSEngine.h"
#include "QmlScripting/ScriptObject.h"
#include "analysis/DriveSettings.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "base/FileWatcher.h"
#include "base/Numeric.h"
#include "base/ScriptConsole.h"
#include "document/Airgap.h"
#include "document/CommandSetPropertyObject.h"
#include "document/DocumentTypes.h"
#include "document/RatedData.h"
#include "document/UndoStack.h"
#include "geometry/Rotor.h"
#include "geometry/RotorItem.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "materials/MaterialsFolder.h"
#include "meshing/Mesh.h"
#include "winding/WindingObject.h"

Document::Document(QObject *parent)
    : QObject(parent)
{
    registerDocumentTypes();
    setObjectName(QStringLiteral("motor"));
    m_console = new ScriptConsole(ScriptConsole::Motor, this);
    m_config = new ConfigObject(this);
    m_fileWatcher = new FileWatcher(this);
    m_undoStack = new UndoStack(this);

    m_rotor = new Rotor(this);
    m_stator = new Stator(this);
    for (int id = Airgap::ID1; id <= Airgap::ID4; ++id)
        m_airgaps.append(new Airgap(Airgap::ID(id), this));
    m_winding = new WindingObject(this);
    m_mesh = new Mesh(this);

    updateActiveAirgaps();

    const bool autoOverhangs = m_winding->autoCalcOverhangEndturns();
    m_winding->setAutoCalcOverhangEndturns(false);
    m_winding->setRadialOverhangOuterEndturn((m_stator->outerDiameter() / 2 - m_stator->innerDiameter() / 2) / 5);
    m_winding->setRadialOverhangInnerEndturn(m_stator->innerDiameter() / 2 / 2);
    m_winding->setAutoCalcOverhangEndturns(autoOverhangs);

    connect(m_stator, &Stator::materialsChanged, this, &Document::materialsChanged);
    connect(m_rotor, &Rotor::materialsChanged, this, &Document::materialsChanged);
    connect(this, &Document::materialsChanged, this, &Document::setModifiedTrue);

    connect(m_config, &ScriptObject::variableChanged, this, &Document::configVariableChanged);
    connect(m_fileWatcher, &FileWatcher::fileChanged, this, &Document::reloadConfigScript);
    setConfigScriptFile(configScriptPath());

    QTimer::singleShot(0, this, &Document::start);
    connectConfigWriteBack();
    buildConfigHandlers();

    m_ratedData = new RatedData(this);
    m_driveSettings = new DriveSettings(this);
    m_analysis = new MagnetostaticAnalysis(this);
    connect(m_ratedData, &RatedData::changed, this, &Document::setModifiedTrue);
    connect(m_driveSettings, &DriveSettings::changed, this, &Document::setModifiedTrue);
    connect(m_analysis, &MagnetostaticAnalysis::changed, this, &Document::setModifiedTrue);
}

Document::~Document()
{
    // Script values must not outlive their engine.
    m_config->setScriptObject(QJSValue(QJSValue::UndefinedValue), nullptr);
    m_engine.reset();
}

void Document::start()
{
    if (m_started)
        return;
    m_started = true;
    loadConfigScript();
    if (!m_configIsLoaded)
        return;
    applyConfigToElements();
    // The script's values make a new design, not a change of it.
    setGeometryModified(false);
    setModified(false);
}

// ---------------------------------------------------------------- states

void Document::setModified(bool modified)
{
    if (m_preparing || m_readonly)
        modified = false;
    if (!m_ready || m_modified.loadAcquire() == modified)
        return;
    m_modified.fetchAndStoreOrdered(modified);
    emit modifiedChanged(modified);
}

void Document::markAsMade()
{
    m_ready = true;
    m_mesh->adjustSizeBound();
    m_mesh->setMeshModified(false);
    setModified(false);
    QTimer::singleShot(0, this, &Document::documentLoaded);
}

void Document::setReadonly(bool readonly)
{
    if (m_readonly == readonly)
        return;
    m_readonly = readonly;
    emit readonlyChanged(readonly);
    if (readonly && m_ready && m_modified.loadAcquire()) {
        m_modified.fetchAndStoreOrdered(false);
        emit modifiedChanged(false);
    }
}

void Document::setSlave(bool slave)
{
    if (m_slave == slave)
        return;
    m_slave = slave;
    emit slaveChanged(slave);
}

void Document::setMode(Mode mode)
{
    if (m_mode == mode)
        return;
    m_mode = mode;
    m_modeChangedSinceSave = true;
    emit modeChanged(mode);
}

void Document::setGeometryModified(bool modified)
{
    if (m_geometryModified != modified) {
        m_geometryModified = modified;
        emit geomertyModifiedChanged(modified);
    }
    m_mesh->setMeshModified(m_mesh->isMeshModified() || modified);
    if (m_geometryModified)
        setModified(true);
}

bool Document::isLockedBySimulationData() const
{
    return !m_slave && !m_dataMA.isEmpty();
}

void Document::clearSimulationData()
{
    m_analysis->setDataSimulation(QVariantMap());
    if (m_slave || m_dataMA.isEmpty())
        return;
    m_dataMA.clear();
    emit dataSimulationChanged();
    setModified(true);
}

// ---------------------------------------------------------------- elements

QVector<Airgap *> Document::airgaps() const
{
    return m_airgaps.mid(0, m_activeAirgaps);
}

Airgap *Document::airgap(int id) const
{
    return id >= Airgap::ID1 && id <= Airgap::ID4 ? m_airgaps.at(id - 1) : nullptr;
}

QObject *Document::statorObject() const { return m_stator; }
QObject *Document::rotorObject() const { return m_rotor; }
QObject *Document::airgapObject() const { return m_airgaps.first(); }
QObject *Document::windingObject() const { return m_winding; }
QObject *Document::meshObject() const { return m_mesh; }

QObject *Document::elementByName(const QString &name) const
{
    QList<QObject *> candidates{const_cast<Document *>(this), m_config, m_stator, m_stator->scriptObject(),
                                m_rotor, m_rotor->scriptObject()};
    for (Airgap *gap : m_airgaps)
        candidates << gap;
    candidates << m_winding << m_mesh;
    for (QObject *candidate : qAsConst(candidates)) {
        if (candidate && candidate->objectName() == name)
            return candidate;
    }
    if (name == QLatin1String("Winding"))
        return m_winding;
    return nullptr;
}

void Document::updateActiveAirgaps()
{
    switch (m_machineType) {
    case Machine::SR:
        m_activeAirgaps = 1;
        break;
    case Machine::SRS:
    case Machine::RSR:
        m_activeAirgaps = 2;
        break;
    case Machine::SRSRS:
    case Machine::RSRSR:
        m_activeAirgaps = 4;
        break;
    case Machine::UnknownType:
        m_activeAirgaps = 0;
        break;
    }
    for (int i = 0; i < m_airgaps.size(); ++i)
        m_airgaps.at(i)->blockSignals(i >= m_activeAirgaps);
}

void Document::setMachineType(Machine::Type type)
{
    if (m_machineType == type)
        return;
    m_machineType = type;
    updateActiveAirgaps();
    m_stator->setCountItems(Stator::countItemsFor(type));
    m_rotor->setCountItems(Rotor::countItemsFor(type));
    m_updatingConfig = true;
    updateConfig();
    m_updatingConfig = false;
    applyConfigToElements();
    emit machineTypeChanged(type);
    setGeometryModified(true);
}

Airgap *Document::airgapOfRotorItem(int id, int side) const
{
    // Gaps on the lower (side 1) and upper (side 2) face of each rotor body; 0 is none.
    static const int table[6][3][2] = {
        {{0, 0}, {0, 0}, {0, 0}}, // UnknownType
        {{1, 0}, {1, 0}, {1, 0}}, // SR
        {{1, 2}, {0, 0}, {0, 0}}, // SRS
        {{1, 2}, {3, 4}, {0, 0}}, // SRSRS
        {{0, 1}, {2, 0}, {2, 0}}, // RSR
        {{0, 1}, {2, 3}, {4, 0}}, // RSRSR
    };
    if (side < 1 || side > 2 || id < 1)
        return nullptr;
    return airgap(table[m_machineType][qMin(id, 3) - 1][side - 1]);
}

Airgap *Document::airgapOfStatorItem(int id, int side) const
{
    static const int table[6][3][2] = {
        {{0, 0}, {0, 0}, {0, 0}}, // UnknownType
        {{0, 1}, {0, 1}, {0, 1}}, // SR
        {{0, 1}, {2, 0}, {2, 0}}, // SRS
        {{0, 1}, {2, 3}, {4, 0}}, // SRSRS
        {{1, 2}, {1, 2}, {1, 2}}, // RSR
        {{1, 2}, {3, 4}, {0, 0}}, // RSRSR
    };
    if (side < 1 || side > 2 || id < 1)
        return nullptr;
    return airgap(table[m_machineType][qMin(id, 3) - 1][side - 1]);
}

double Document::height() const
{
    double sum = 0.0;
    const auto statorItems = m_stator->items();
    for (int i = 0; i < m_stator->countItems(); ++i)
        sum += statorItems.at(i)->height();
    const auto rotorItems = m_rotor->items();
    for (int i = 0; i < m_rotor->countItems(); ++i)
        sum += rotorItems.at(i)->height();
    for (const Airgap *gap : airgaps())
        sum += gap->thickness();
    return sum;
}

SimDomain Document::simDomain() const
{
    return m_stator->simDomain();
}

namespace {

bool atOrBelow(double a, double b)
{
    return a < b || qFuzzyCompare(a, b);
}

} // namespace

quint32 Document::scopeAt(const QPointF &point) const
{
    const double z = point.y();
    // A gap belongs half to each of its two bodies.
    const auto holds = [this, z](const MotorItem *item, const Airgap *below, const Airgap *above) {
        const QPair<double, double> range = item->range();
        const double low = below ? below->posMiddle() : range.first;
        const double high = above ? above->posMiddle() : range.second;
        return atOrBelow(low, z) && atOrBelow(z, high);
    };
    for (const MotorItem *item : m_stator->activeItems()) {
        if (holds(item, airgapOfStatorItem(item->id(), 1), airgapOfStatorItem(item->id(), 2)))
            return item->scope();
    }
    for (const MotorItem *item : m_rotor->activeItems()) {
        if (holds(item, airgapOfRotorItem(item->id(), 1), airgapOfRotorItem(item->id(), 2)))
            return item->scope();
    }
    return 0;
}

double Document::simRadialOuterDomain() const
{
    return m_stator->simRadialOuterDomain();
}

// ---------------------------------------------------------------- commands

void Document::setPropertyUndoable(QObject *target, const QString &name, const QVariant &value)
{
    const QByteArray propertyName = name.toLatin1();
    const QVariant present = target->property(propertyName.constData());
    if (present == value)
        return;
    execCommand(new CommandSetPropertyObject(target, propertyName, value, present));
}

void Document::execCommand(UndoCommand *command)
{
    if (m_undoStack->signalsBlocked()) {
        qWarning() << "exec command while restore undo stack";
        delete command;
        return;
    }
    m_undoStack->push(command);
}

void Document::undo()
{
    m_undoRedoRunning = true;
    m_undoStack->undo();
    m_undoRedoRunning = false;
}

void Document::redo()
{
    m_undoRedoRunning = true;
    m_undoStack->redo();
    m_undoRedoRunning = false;
}

// ---------------------------------------------------------------- periodicity

namespace {

// Each character at an even index is a sign: flipping it turns a winding sector
// into the one that carries the opposite current.
QString withFlippedSigns(QString text)
{
    for (int i = 0; i < text.size(); i += 2)
        text[i] = text.at(i) == QLatin1Char('+') ? QLatin1Char('-') : QLatin1Char('+');
    return text;
}

} // namespace

Document::Periodicity Document::computePeriodicity(int slotCount, int polePairs, int layers, const QString &signature)
{
    const Periodicity none(1, None);
    if (signature.isEmpty() || signature.contains(QLatin1Char('.')) || slotCount < 3 || polePairs < 1 || layers < 1)
        return none;
    const int length = signature.size();

    int d = 0;
    for (int candidate = slotCount / 3; candidate >= 1; --candidate) {
        if (slotCount % candidate != 0)
            continue;
        const int n = 2 * layers * slotCount / candidate;
        if (n == length || signature.left(n) == signature.mid(n % length, n)) {
            d = candidate;
            break;
        }
    }
    BoundaryCondition c = Periodic;
    if (d == 0) {
        d = 1;
    } else if (slotCount % (2 * d) == 0) {
        const int n = 2 * layers * slotCount / (2 * d);
        if (signature.mid(0, n) == withFlippedSigns(signature.mid(n % length, n))) {
            c = Antiperiodic;
            d *= 2;
        }
    }

    int g = 1;
    BoundaryCondition h = None;
    if (slotCount % (2 * polePairs) == 0) {
        g = 2 * polePairs;
        h = Antiperiodic;
    } else if (slotCount % polePairs == 0) {
        g = polePairs;
        h = Periodic;
    }

    Periodicity result = none;
    if (d == g && c == h) {
        result = {g, h};
    } else {
        if (c == Antiperiodic) {
            if ((2 * polePairs) % d != 0)
                return none;
            if ((2 * polePairs / d) % 2 == 1)
                return {d, Antiperiodic};
            d /= 2;
            c = Periodic;
        }
        if (polePairs % d != 0 || (2 * polePairs / d) % 2 == 1)
            return none;
        result = {d, Periodic};
    }
    if (result.first == 1)
        result.second = None;
    return result;
}

Document::Periodicity Document::computePeriodicity() const
{
    return computePeriodicity(m_stator->numberSlots(), m_rotor->numberPolePairs(), m_winding->effectiveNumberLayers(),
                              m_winding->signatureLayouts());
}

Document::Periodicity Document::restrictedPeriodicity(const Periodicity &computed, BoundaryCondition requested)
{
    auto [count, condition] = computed;
    switch (requested) {
    case None:
        count = 1;
        condition = qMax(condition, None);
        break;
    case Periodic:
        if (condition == Antiperiodic)
            count /= 2;
        condition = qMax(condition, Periodic);
        break;
    case Antiperiodic:
    case UnknownBoundaryCondition:
        break;
    }
    return {count, condition};
}

Document::BoundaryCondition Document::wantedBoundaryCondition(BoundaryConditionMode mode, BoundaryCondition stored,
                                                              const Periodicity &computed, int polePairs)
{
    if (mode == Automatic)
        return computed.second;
    if (stored == Periodic && (polePairs == 1 || (computed.second == Antiperiodic && computed.first <= 2)))
        stored = None;
    return qMax(stored, computed.second);
}

Document::BoundaryCondition Document::wantedBoundaryCondition() const
{
    return wantedBoundaryCondition(m_boundaryConditionMode, m_boundaryCondition, computePeriodicity(),
                                   m_rotor->numberPolePairs());
}

void Document::setBoundaryCondition(BoundaryCondition requested)
{
    const auto [count, condition] = restrictedPeriodicity(computePeriodicity(), requested);
    if (count == m_periodicity && condition == m_boundaryCondition)
        return;
    const bool conditionChanged = condition != m_boundaryCondition;
    const bool countChanged = count != m_periodicity;
    m_periodicity = count;
    m_boundaryCondition = condition;
    m_mesh->setMeshInvalid(true);
    m_mesh->setMeshModified(true);
    setModified(true);
    if (conditionChanged)
        emit boundaryConditionChanged(condition);
    if (countChanged)
        emit periodicityChanged(count);
}

void Document::setBoundaryConditionMode(BoundaryConditionMode mode)
{
    if (m_boundaryConditionMode != mode)
        m_boundaryConditionMode = mode;
    setBoundaryCondition(wantedBoundaryCondition());
    setModified(true);
    emit boundaryConditionModeChanged(m_boundaryConditionMode);
}

void Document::updateBoundaryCondition()
{
    setBoundaryCondition(wantedBoundaryCondition());
}

// ---------------------------------------------------------------- pieces

PieceList Document::pieces()
{
    PieceList built;
    bool current = false;
    {
        // The list is copied under the mutex too: resetPieces may clear it at any time.
        const std::lock_guard locker(m_piecesMutex);
        if (m_piecesValid.loadAcquire())
            return m_pieces;
        const int generation = m_piecesGeneration.loadAcquire();
        built = taskCreatePieces();
        // A change during the build leaves the list to the next request.
        current = generation == m_piecesGeneration.loadAcquire();
        if (current) {
            m_pieces = built;
            m_piecesValid.storeRelease(true);
        }
    }
    if (current)
        emit piecesReady();
    return built;
}

namespace {

// The bodies of both elements are built at the same time: each item guards its
// caches, and the rotor reaches the stator only for its simulation domain, which
// the stator gives under its engine's mutex.
template <typename Item>
void buildMissingPieces(tbb::task_group &group, const QVector<Item *> &items)
{
    for (Item *item : items) {
        if (!item->hasCachedPieces())
            group.run([item] { item->createPieces(); });
    }
}

template <typename Item>
void appendInPlace(PieceList &result, const QVector<Item *> &items)
{
    for (const Item *item : items) {
        PieceList itemPieces = item->cachedPieces();
        const double position = item->position();
        if (!Numeric::isZero(position)) {
            for (Piece &piece : itemPieces)
                piece.translate(0.0, 0.0, position);
        }
        result.append(itemPieces);
    }
}

} // namespace

PieceList Document::taskCreatePieces()
{
    const QVector<StatorItem *> statorItems = m_stator->items().mid(0, m_stator->countItems());
    const QVector<RotorItem *> rotorItems = m_rotor->items().mid(0, m_rotor->countItems());

    QElapsedTimer timer;
    timer.start();
    tbb::task_group group;
    buildMissingPieces(group, statorItems);
    buildMissingPieces(group, rotorItems);
    group.wait();
    const qint64 createTime = timer.elapsed();
    qDebug() << "create pieces at" << createTime << "ms";
    m_stator->updateGeometryErrors();
    m_rotor->updateGeometryErrors();
    qDebug() << "motor pieces create at" << createTime << "ms";

    timer.restart();
    PieceList result;
    appendInPlace(result, statorItems);
    appendInPlace(result, rotorItems);
    qDebug() << "pieces move at" << timer.elapsed() << "ms";
    return result;
}

void Document::resetPieces()
{
    m_piecesGeneration.fetchAndAddOrdered(1);
    if (!m_piecesValid.loadAcquire())
        return;
    {
        const std::lock_guard locker(m_piecesMutex);
        m_pieces.clear();
        m_piecesValid.storeRelease(false);
    }
    m_mesh->clearGeometry();
    emit pieceReset();
}

void Document::ensureData()
{
    pieces();
    m_winding->updateEndturns();
    if (m_winding->isCalcEndInductancePending()) {
        QElapsedTimer timer;
        timer.start();
        // Waiting for events keeps the loop from spinning until the timer fires.
        while (m_winding->isCalcEndInductancePending())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        qInfo() << "Calc inductance was completed at" << timer.elapsed() << "ms";
    }
    m_mesh->createGeometrySlices();
    m_mesh->createMeshSlices();
    QCoreApplication::processEvents();
}

// ---------------------------------------------------------------- errors

bool Document::hasGeometryErrors() const
{
    if (m_stator->geometryErrors() || m_rotor->geometryErrors())
        return true;
    for (const Airgap *gap : airgaps()) {
        if (gap->geometryErrors())
            return true;
    }
    return false;
}

bool Document::hasMaterialErrors() const
{
    return m_stator->materialErrors() || m_rotor->materialErrors();
}

QString Document::geometryErrorText() const
{
    QStringList texts{m_stator->geometryErrorText(), m_rotor->geometryErrorText()};
    for (const Airgap *gap : airgaps())
        texts << gap->elementErrors();
    texts.removeAll(QString());
    return texts.join(QLatin1Char('\n'));
}

QString Document::materialErrorText() const
{
    QStringList texts{m_stator->materialErrorText(), m_rotor->materialErrorText()};
    texts.removeAll(QString());
    return texts.join(QLatin1Char('\n'));
}

QString Document::errorText() const
{
    if (!m_stator->scriptErrorText().isEmpty())
        return m_stator->scriptErrorText();
    if (!m_rotor->scriptErrorText().isEmpty())
        return m_rotor->scriptErrorText();
    if (hasGeometryErrors())
        return geometryErrorText();
    if (hasMaterialErrors())
        return materialErrorText();
    if (!m_winding->elementErrors().isEmpty())
        return m_winding->elementErrors();
    return m_mesh->elementErrors();
}

void Document::checkElements()
{
    for (Airgap *gap : airgaps())
        gap->checkErrors();
}

// ---------------------------------------------------------------- folders

QString Document::scriptsPath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/assets/scripts");
}

QString Document::configScriptPath()
{
    return scriptsPath() + QStringLiteral("/ZolvaneConfig.js");
}

QString Document::materialsPath()
{
    return materialsFolder();
}
