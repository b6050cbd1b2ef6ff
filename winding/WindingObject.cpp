#include "winding/WindingObject.h"

#include <QDataStream>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QRegularExpression>
#include <algorithm>

#include "QmlScripting/ConfigObject.h"
#include "QmlScripting/JSEngine.h"
#include "QmlScripting/ScriptDescribeList.h"
#include "base/Assign.h"
#include "base/FileWatcher.h"
#include "base/Numeric.h"
#include "base/SafeWrite.h"
#include "base/ScriptConsole.h"
#include "base/StreamChecks.h"
#include "document/Document.h"
#include "geometry/DesignChange.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "materials/AbstractMaterial.h"
#include "materials/MaterialConductorEngine.h"
#include "winding/LayoutFaces.h"
#include "winding/LayoutGenerator.h"
#include "winding/LayoutSignature.h"
#include "winding/WindingFactor.h"
#include "winding/WireGauge.h"

namespace {

const QString autoText = QStringLiteral("Auto");

// Version of the winding's block in a document file.
const qint32 streamVersion = 13;

// Whether two layouts put their coils in the same slots and layers; the end
// turns rest on that, not on the parallel paths.
bool samePlaces(const Winding::Layout &a, const Winding::Layout &b)
{
    for (int phase = Winding::A; phase < Winding::Count; ++phase) {
        const Winding::CoilList &listA = a.at(phase);
        const Winding::CoilList &listB = b.at(phase);
        if (!std::equal(listA.cbegin(), listA.cend(), listB.cbegin(), listB.cend(),
                        [](const Winding::Coil &coilA, const Winding::Coil &coilB) {
                            return coilA.samePlace(coilB);
                        }))
            return false;
    }
    return true;
}

bool samePlaces(const QVector<Winding::Layout> &a, const QVector<Winding::Layout> &b)
{
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(),
                      [](const Winding::Layout &layoutA, const Winding::Layout &layoutB) {
                          return samePlaces(layoutA, layoutB);
                      });
}

// The parallel paths of the coils, in the order of the layouts.
QVector<int> parallelPathsOfCoils(const QVector<Winding::Layout> &layouts)
{
    QVector<int> paths;
    for (const Winding::Layout &layout : layouts) {
        for (const Winding::CoilList &list : layout) {
            for (const Winding::Coil &coil : list)
                paths << coil.parallelPath;
        }
    }
    return paths;
}

} // namespace

WindingObject::WindingObject(Document *document)
    : CoreMotorElement(document)
    , m_console(new ScriptConsole(ScriptConsole::Winding, this))
    , m_watcher(new FileWatcher(this))
{
    setObjectName(QStringLiteral("winding"));

    Stator *stator = document->stator();
    Rotor *rotor = document->rotor();
    connect(m_watcher, &FileWatcher::fileChanged, this, [this] {
        reloadEndturnScript(tr("Script '%1' changed").arg(QDir::toNativeSeparators(endturnsScriptPath())));
    });
    connect(document, &Document::machineTypeChanged, this, &WindingObject::updateCountLayouts);
    connect(stator, &Stator::typeMiddleItemChanged, this, &WindingObject::updateCountLayouts);
    connect(stator, &Stator::numberSlotsChanged, this, [this] {
        limitCoilSpan();
        updateLayouts();
        updateWireDiameter();
        updateFillFactors();
    });
    connect(stator, &Stator::piecesReady, this, [this] {
        updateLayouts();
        updateFillFactors();
        updateWireDiameter();
    });
    connect(stator, &Stator::windingTemperatureChanged, this, &WindingObject::updatePhaseResistance);
    connect(stator, &Stator::windingMaterialChanged, this, &WindingObject::updatePhaseResistance);
    connect(firstStatorItem(), &StatorItem::areaWindingSlotChanged, this, [this] {
        updateWireDiameter();
        giveHeightsTheirDefault();
    });
    connect(rotor, &Rotor::numberPolePairsChanged, this, &WindingObject::updateLayouts);
    connect(rotor, &Rotor::poleArrangementChanged, this, &WindingObject::updateLayouts);
    connect(this, &WindingObject::windingChanged, this, &WindingObject::updateWindingErrors);
    connect(this, &WindingObject::endturnsChanged, this, [this] {
        if (!hasWindingPieces())
            return;
        updateWireLength();
        updatePhaseResistance();
    });
    connect(this, &WindingObject::endturnsChanged, this, &WindingObject::scheduleCalcEndInductance);
    m_calcEndInductanceTimer.setSingleShot(true);
    m_calcEndInductanceTimer.setInterval(250);
    connect(&m_calcEndInductanceTimer, &QTimer::timeout, this, &WindingObject::deferCalcEndInductance);

    // An automatic layout follows from the settings from the start; the document isn't
    // built far enough yet to be told.
    fillBaseLayout();
    makeLayouts();
}

// The engine is complete here.
WindingObject::~WindingObject() = default;

template <typename Signal>
void WindingObject::announce(Signal signal)
{
    emit(this->*signal)();
    emit windingChanged();
    document()->setModified(true);
}

int WindingObject::numberSlots() const
{
    return document()->stator()->numberSlots();
}

bool WindingObject::isOnePerBody() const
{
    return isToroidal() || document()->stator()->typeMiddleItem() == MotorElement::Yokeless;
}

Winding::LayoutSettings WindingObject::layoutSettings() const
{
    Winding::LayoutSettings settings;
    settings.numberSlots = numberSlots();
    settings.polePairs = document()->rotor()->numberPolePairs();
    settings.type = m_type;
    settings.numberLayers = m_numberLayers;
    settings.layersOrientation = m_layersOrientation;
    settings.autoCalcCoilSpan = m_autoCalcCoilSpan;
    settings.coilSpan = m_coilSpan;
    settings.parallelPaths = m_parallelPaths;
    return settings;
}

void WindingObject::setCircuit(Winding::Circuit circuit)
{
    if (circuit == m_circuit)
        return;
    m_circuit = circuit;
    announce(&WindingObject::circuitChanged);
}

void WindingObject::setConnection(const QString &connection)
{
    if (connection == m_connection)
        return;
    m_connection = connection;
    announce(&WindingObject::connectionChanged);
}

void WindingObject::setParallelPaths(int parallelPaths)
{
    if (parallelPaths == m_parallelPaths)
        return;
    m_parallelPaths = parallelPaths;
    announce(&WindingObject::parallelPathsChanged);
    updateLayouts();
    followWireCount();
    updatePhaseResistance();
    scheduleCalcEndInductance();
}

void WindingObject::setNumberTurns(int numberTurns)
{
    if (numberTurns == m_numberTurns)
        return;
    m_numberTurns = numberTurns;
    announce(&WindingObject::numberTurnsChanged);
    followWireCount();
    updateWireLength();
}

void WindingObject::setStrandsConductor(int strands)
{
    if (strands == m_strandsConductor)
        return;
    m_strandsConductor = strands;
    announce(&WindingObject::strandsConductorChanged);
    followWireCount();
    updatePhaseResistance();
}

void WindingObject::followWireCount()
{
    if (m_wireSizeMethod == Winding::FillFactor)
        updateWireDiameter();
    else
        updateFillFactors();
}

void WindingObject::rememberWireSize()
{
    if (m_wireSize.contains(QLatin1String("AWG")))
        m_lastAwgName = m_wireSize;
    else if (m_wireSize.contains(QLatin1String("SWG")))
        m_lastSwgName = m_wireSize;
}

void WindingObject::setWireSizeMethod(Winding::WireSizeMethod method)
{
    if (method == m_wireSizeMethod)
        return;
    m_wireSizeMethod = method;
    emit wireSizeMethodChanged();
    switch (method) {
    case Winding::AWG:
    case Winding::SWG:
        // The gauge of the other table is kept for the way back.
        rememberWireSize();
        m_wireSize.clear();
        m_computedWireDiameter = 0.0;
        m_computedCoilFillFactor = 0.0;
        setWireSize(method == Winding::AWG ? m_lastAwgName : m_lastSwgName);
        break;
    case Winding::FillFactor:
        m_computedWireDiameter = 0.0;
        updateWireDiameter();
        updatePhaseResistance();
        updateSlotFillFactorOfGivenCoilFillFactor();
        emit coilFillFactorChanged();
        break;
    case Winding::WireDiameter:
        m_computedCoilFillFactor = 0.0;
        updatePhaseResistance();
        updateFillFactors();
        emit wireDiameterChanged();
        break;
    }
    emit windingChanged();
    document()->setModified(true);
}

void WindingObject::setWireSize(const QString &name)
{
    static const QRegularExpression gaugeName(QStringLiteral("\\d+\\s[A|S]WG"));
    QString validName = name;
    if (!gaugeName.match(name).hasMatch()) {
        qCritical() << "Set invalid wire size" << name;
        validName.clear();
    }
    if (validName == m_wireSize)
        return;
    rememberWireSize();
    m_wireSize = validName;
    emit wireSizeChanged();
    updateWireDiameter();
    updatePhaseResistance();
    updateFillFactors();
    emit windingChanged();
    document()->setModified(true);
}

double WindingObject::wireDiameter() const
{
    return m_wireSizeMethod == Winding::WireDiameter ? m_givenWireDiameter : m_computedWireDiameter;
}

void WindingObject::setWireDiameter(double diameter)
{
    if (m_wireSizeMethod != Winding::WireDiameter) {
        qWarning() << "Set wire diameter for Winding::WireSizeMethod::WireDiameter only, ignore it";
        return;
    }
    if (qFuzzyCompare(diameter, m_givenWireDiameter))
        return;
    m_givenWireDiameter = diameter;
    m_computedWireDiameter = 0.0;
    m_computedCoilFillFactor = 0.0;
    emit wireDiameterChanged();
    updateFillFactors();
    updatePhaseResistance();
    emit windingChanged();
    document()->setModified(true);
}

double WindingObject::coilFillFactor() const
{
    return m_wireSizeMethod == Winding::FillFactor ? m_givenCoilFillFactor : m_computedCoilFillFactor;
}

void WindingObject::setCoilFillFactor(double factor)
{
    if (m_wireSizeMethod != Winding::FillFactor) {
        qWarning() << "use setCoilFillFactor for WireSizeMethod::FillFactor only, m_wireSizeMethod:"
                   << Winding::toString(m_wireSizeMethod);
        return;
    }
    const double clipped = qBound(1e-6, factor, 2.0);
    if (qFuzzyCompare(clipped, m_givenCoilFillFactor))
        return;
    m_givenCoilFillFactor = clipped;
    m_computedWireDiameter = 0.0;
    m_computedCoilFillFactor = 0.0;
    updateSlotFillFactorOfGivenCoilFillFactor();
    emit coilFillFactorChanged();
    updateWireDiameter();
    updatePhaseResistance();
    emit windingChanged();
    document()->setModified(true);
}

void WindingObject::setSlotFillFactor(double factor)
{
    const double clipped = qBound(0.0, factor, 2.0);
    if (qFuzzyCompare(clipped, m_slotFillFactor))
        return;
    m_slotFillFactor = clipped;
    emit slotFillFactorChanged();
    if (hasWindingPieces()) {
        const StatorItem *item = firstStatorItem();
        setCoilFillFactor(Winding::areaRatio(item->areaWindingSlot() * clipped, item->areaWindingCoil()));
    }
    emit windingChanged();
    document()->setModified(true);
}

StatorItem *WindingObject::firstStatorItem() const
{
    return document()->stator()->items().first();
}

bool WindingObject::hasWindingPieces() const
{
    const StatorItem *item = firstStatorItem();
    return item->hasCachedPieces() && !item->cachedPieces().ofKind(AbstractMaterial::WindingKind).isEmpty();
}

Winding::CoilWire WindingObject::coilWire() const
{
    Winding::CoilWire wire;
    wire.diameter = wireDiameter();
    wire.numberTurns = m_numberTurns;
    wire.numberLayers = m_numberLayers;
    wire.strands = m_strandsConductor;
    return wire;
}

void WindingObject::updateWireDiameter()
{
    double diameter = 0.0;
    switch (m_wireSizeMethod) {
    case Winding::WireDiameter:
        return;
    case Winding::AWG:
    case Winding::SWG:
        diameter = Winding::gaugeDiameter(m_wireSize);
        break;
    case Winding::FillFactor:
        diameter = Winding::diameterForFillFactor(firstStatorItem()->areaWindingCoil(), m_givenCoilFillFactor,
                                                  coilWire());
        break;
    }
    if (assignChanged(m_computedWireDiameter, diameter))
        emit wireDiameterChanged();
}

void WindingObject::updateFillFactors()
{
    if (!hasWindingPieces())
        return;
    const StatorItem *item = firstStatorItem();
    if (m_wireSizeMethod == Winding::FillFactor) {
        emit coilFillFactorChanged();
        updateSlotFillFactorOfGivenCoilFillFactor();
        return;
    }
    const double copper = Winding::copperArea(coilWire());
    const double coilFactor = Winding::areaRatio(copper, item->areaWindingCoil());
    if (!Numeric::isZero(coilFactor - m_computedCoilFillFactor)) {
        m_computedCoilFillFactor = coilFactor;
        emit coilFillFactorChanged();
    }
    const double slotFactor = Winding::areaRatio(copper, item->areaWindingSlot());
    // A slot that measured nothing is taken as filled by the coil alone.
    storeSlotFillFactor(Numeric::isZero(slotFactor) ? coilFactor : slotFactor);
}

void WindingObject::updateSlotFillFactorOfGivenCoilFillFactor()
{
    const StatorItem *item = firstStatorItem();
    const double slotArea = item->areaWindingSlot();
    storeSlotFillFactor(slotArea > 0.0 ? item->areaWindingCoil() / slotArea * m_givenCoilFillFactor : 0.0);
}

void WindingObject::storeSlotFillFactor(double factor)
{
    if (Numeric::isZero(factor - m_slotFillFactor))
        return;
    m_slotFillFactor = factor;
    emit slotFillFactorChanged();
}

void WindingObject::updatePhaseResistance()
{
    const Stator *stator = document()->stator();
    if (!m_autoCalcPhaseResistance || stator->windingMaterial().isEmpty())
        return;
    updateEndturns();
    m_phaseResistances = {};
    const MaterialConductorDescribe *material =
        MaterialConductorEngine::instance().describe(stator->windingMaterial());
    if (!material)
        return;
    Winding::Conductor conductor;
    conductor.resistivity = material->electricResistivity;
    conductor.temperatureCoefficient = material->temperatureCoefficient;
    for (int phase = Winding::A; phase < Winding::Count; ++phase) {
        m_phaseResistances[phase] = Winding::phaseResistance(m_phaseWireLengths[phase], wireDiameter(),
                                                             m_strandsConductor, m_parallelPaths, conductor,
                                                             stator->windingTemperature());
    }
    if (!m_manualPhaseResistanceSet) {
        m_manualPhaseResistance = m_phaseResistances[Winding::A];
        m_manualPhaseResistanceSet = true;
    }
    if (assignChanged(m_phaseResistance, m_phaseResistances[Winding::A]))
        emit phaseResistanceChanged();
    updateWindingErrors();
}

void WindingObject::setType(Winding::Type type)
{
    if (type == m_type)
        return;
    m_type = type;
    announce(&WindingObject::typeChanged);
    // The slot pieces of the stator are drawn for the kind of winding.
    document()->stator()->clearCashPieces();
    markGeometryModified(document());
    updateCountLayouts();
    updateLayouts();
}

void WindingObject::setNumberLayers(int numberLayers)
{
    const int clipped = qBound(1, numberLayers, 2);
    if (clipped == m_numberLayers)
        return;
    m_numberLayers = clipped;
    announce(&WindingObject::numberLayersChanged);
    if (isSingleLayer() || isOrientationLeftRight())
        setAutoCalcCoilSpan(true);
    document()->stator()->clearCashPieces();
    markGeometryModified(document());
    updateLayouts();
}

void WindingObject::setLayersOrientation(Winding::LayersOrientation orientation)
{
    if (orientation == m_layersOrientation)
        return;
    m_layersOrientation = orientation;
    announce(&WindingObject::layersOrientationChanged);
    if (isSingleLayer())
        setAutoCalcCoilSpan(true);
    document()->stator()->clearCashPieces();
    markGeometryModified(document());
    updateLayouts();
}

void WindingObject::setCoilSpan(int span)
{
    if (m_autoCalcCoilSpan)
        return;
    const int before = m_coilSpan;
    storeCoilSpan(layoutSettings().clippedCoilSpan(span));
    if (m_coilSpan != before)
        updateLayouts();
}

void WindingObject::storeCoilSpan(int span)
{
    if (span == m_coilSpan)
        return;
    m_coilSpan = span;
    announce(&WindingObject::coilSpanChanged);
    followOverhangRule();
    dropEndturns();
    updateOverhangLimits();
}

void WindingObject::limitCoilSpan()
{
    storeCoilSpan(qMin(m_coilSpan, numberSlots() / 2));
}

void WindingObject::setAutoCalcCoilSpan(bool automatic)
{
    // A single layer and side-by-side layers leave the span no choice.
    const bool value = automatic || isSingleLayer() || isOrientationLeftRight();
    if (value == m_autoCalcCoilSpan)
        return;
    m_autoCalcCoilSpan = value;
    announce(&WindingObject::autoCalcCoilSpanChanged);
    updateLayouts();
}

void WindingObject::setModeLayout(Winding::ModeLayout mode)
{
    if (mode == m_modeLayout)
        return;
    m_modeLayout = mode;
    announce(&WindingObject::modeLayoutChanged);
    updateLayouts();
}

void WindingObject::setLayout(const Winding::Layout &layout)
{
    if (m_modeLayout != Winding::Manual)
        return;
    Winding::Layout value = layout;
    value.resize(Winding::Count);
    Winding::LayoutGenerator(layoutSettings()).assignOrientations(value, m_coilSpan);
    if (value == m_baseLayout)
        return;
    const bool endturnsStay = samePlaces(value, m_baseLayout);
    m_baseLayout = value;
    makeLayouts();
    announce(&WindingObject::layoutsChanged);
    if (!endturnsStay)
        dropEndturns();
    document()->updateBoundaryCondition();
}

void WindingObject::fillBaseLayout()
{
    const bool manual = m_modeLayout == Winding::Manual;
    if (!manual)
        m_baseLayout = Winding::Layout();
    const Winding::LayoutGenerator generator(layoutSettings());
    const std::optional<Winding::SpannedLayout> generated = generator.baseLayout();
    if (!generated)
        return;
    if (manual) {
        // The user's coils and their layers stay; only their senses follow the span.
        generator.assignOrientations(m_baseLayout, generated->span);
    } else {
        m_baseLayout = generated->layout;
    }
    storeCoilSpan(generated->span);
}

void WindingObject::updateLayouts()
{
    const QVector<Winding::Layout> before = m_coilLayouts;
    if (m_modeLayout == Winding::Manual)
        m_baseLayout = Winding::LayoutGenerator(layoutSettings()).fittedManualLayout(m_baseLayout);
    else
        fillBaseLayout();
    makeLayouts();

    const bool placesStay = samePlaces(before, m_coilLayouts);
    if (!placesStay || parallelPathsOfCoils(before) != parallelPathsOfCoils(m_coilLayouts)) {
        announce(&WindingObject::layoutsChanged);
        document()->updateBoundaryCondition();
        if (!placesStay)
            dropEndturns();
    }
    updateWindingErrors();
}

void WindingObject::makeLayouts()
{
    Winding::FaceSettings faces;
    faces.machineType = document()->machineType();
    faces.countLayouts = m_countLayouts;
    // Without a configuration script no layout is turned round.
    faces.reverseFlag = [this](int key) {
        return document()->isConfigLoaded() && document()->config()->layoutReverse(key - 1);
    };
    faces.reverseLayers = m_reverseLayersLayouts;
    faces.layersSwappable = isDoubleLayer() && isOrientationUpperLower();
    m_coilLayouts = Winding::faceLayouts(m_baseLayout, faces);
}

void WindingObject::updateCountLayouts()
{
    const int count = Winding::countLayouts(document()->machineType(), isOnePerBody());
    if (count == m_countLayouts)
        return;
    m_countLayouts = count;
    m_reverseLayersLayouts.resize(count);
    makeLayouts();
    announce(&WindingObject::countLayoutsChanged);
}

int WindingObject::statorItemOfLayout(int index) const
{
    return Winding::statorItemOfLayout(document()->machineType(), isOnePerBody(), index);
}

void WindingObject::setReverseLayersLayouts(const QVector<bool> &reverse)
{
    if (reverse == m_reverseLayersLayouts)
        return;
    m_reverseLayersLayouts = reverse;
    announce(&WindingObject::reverseLayersLayoutsChanged);
    updateLayouts();
}

void WindingObject::setReverseLayerLayout(int index, bool reverse)
{
    if (index < 0 || index >= m_reverseLayersLayouts.size())
        return;
    QVector<bool> value = m_reverseLayersLayouts;
    value[index] = reverse;
    setReverseLayersLayouts(value);
}

bool WindingObject::isFeasible() const
{
    return layoutSettings().isFeasible();
}

bool WindingObject::isParallelPathsValid() const
{
    return layoutSettings().isParallelPathsValid();
}

bool WindingObject::isBalanced() const
{
    return Winding::LayoutGenerator(layoutSettings()).isBalanced(m_baseLayout);
}

double WindingObject::calcWindingFactor(int harmonic) const
{
    return Winding::windingFactor(layoutSettings(), m_baseLayout.at(Winding::A), harmonic);
}

QString WindingObject::signatureLayouts() const
{
    return Winding::layoutSignature(m_baseLayout, layoutSettings());
}

QString WindingObject::layoutsToText() const
{
    return Winding::layoutsToText(m_coilLayouts, m_countLayouts, m_parallelPaths);
}

bool WindingObject::saveLayoutsToFile(const QString &path) const
{
    if (!SafeWrite::mayWrite(path))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return SafeWrite::failed(path, file.errorString());
    if (file.write(layoutsToText().toUtf8()) < 0) {
        file.cancelWriting();
        return SafeWrite::failed(path, file.errorString());
    }
    return file.commit() || SafeWrite::failed(path, file.errorString());
}

QVector<Winding::SlotMark> WindingObject::slotMarks(int layoutIndex) const
{
    return Winding::slotMarks(m_coilLayouts.value(layoutIndex), numberSlots(), effectiveNumberLayers());
}

void WindingObject::setEndturnsScript(const QString &script)
{
    const QString catalogued = ScriptDescribeList::endturns().findScript(script).script();
    const QString name = catalogued.isEmpty() ? script : catalogued;
    if (name == m_endturnsScript)
        return;
    m_endturnsScript = name;
    // The next end turns read the new file into a new engine.
    m_engine.reset();
    m_scriptLoaded = false;
    announce(&WindingObject::endturnsScriptChanged);
    dropEndturns();
    markGeometryModified(document());
}

void WindingObject::setAutoCalcOverhangEndturns(bool automatic)
{
    m_autoCalcOverhangEndturnsWish = automatic;
    followOverhangRule();
}

void WindingObject::followOverhangRule()
{
    // A single-layer coil that spans two slots or more has no automatic overhang.
    const bool allowed = !(isSingleLayer() && m_coilSpan >= 2);
    applyAutoCalcOverhangEndturns(m_autoCalcOverhangEndturnsWish && allowed);
}

void WindingObject::applyAutoCalcOverhangEndturns(bool automatic)
{
    if (automatic == m_autoCalcOverhangEndturns)
        return;
    m_autoCalcOverhangEndturns = automatic;
    announce(&WindingObject::autoCalcOverhangEndturnsChanged);
    if (automatic) {
        keepManualOverhangs();
    } else {
        setRadialOverhangOuterEndturn(m_manualRadialOverhangOuterEndturn);
        setRadialOverhangInnerEndturn(m_manualRadialOverhangInnerEndturn);
        setHeightOuterEndturn(m_manualHeightOuterEndturn);
        setHeightInnerEndturn(m_manualHeightInnerEndturn);
    }
    updateOverhangLimits();
    dropEndturns();
}

void WindingObject::keepManualOverhangs()
{
    m_manualRadialOverhangOuterEndturn = m_radialOverhangOuterEndturn;
    m_manualRadialOverhangInnerEndturn = m_radialOverhangInnerEndturn;
    m_manualHeightOuterEndturn = m_heightOuterEndturn;
    m_manualHeightInnerEndturn = m_heightInnerEndturn;
}

template <typename Signal>
void WindingObject::announceOverhang(Signal signal)
{
    emit(this->*signal)();
    emit windingChanged();
    // Automatic values follow the design: they change nothing the user made.
    if (!m_autoCalcOverhangEndturns)
        document()->setModified(true);
}

void WindingObject::setRadialOverhangOuterEndturn(double overhang)
{
    if (qFuzzyCompare(overhang, m_radialOverhangOuterEndturn))
        return;
    m_radialOverhangOuterEndturn = overhang;
    dropEndturns();
    announceOverhang(&WindingObject::radialOverhangOuterEndturnChanged);
}

void WindingObject::setRadialOverhangInnerEndturn(double overhang)
{
    if (qFuzzyCompare(overhang, m_radialOverhangInnerEndturn))
        return;
    m_radialOverhangInnerEndturn = overhang;
    dropEndturns();
    announceOverhang(&WindingObject::radialOverhangInnerEndturnChanged);
}

void WindingObject::setHeightOuterEndturn(double height)
{
    if (Numeric::isZero(height - m_heightOuterEndturn))
        return;
    m_heightOuterEndturn = height;
    dropEndturns();
    announceOverhang(&WindingObject::heightOuterEndturnChanged);
}

void WindingObject::setHeightInnerEndturn(double height)
{
    if (Numeric::isZero(height - m_heightInnerEndturn))
        return;
    m_heightInnerEndturn = height;
    dropEndturns();
    announceOverhang(&WindingObject::heightInnerEndturnChanged);
}

void WindingObject::setWidthWindingCoil(double width)
{
    if (Numeric::isZero(width - m_widthWindingCoil))
        return;
    m_widthWindingCoil = width;
    emit widthWindingCoilChanged();
    updateOverhangLimits();
}

void WindingObject::setHeightWindingCoil(double height)
{
    if (Numeric::isZero(height - m_heightWindingCoil))
        return;
    m_heightWindingCoil = height;
    emit heightWindingCoilChanged();
    updateOverhangLimits();
}

void WindingObject::giveHeightsTheirDefault()
{
    // End turns as high as two bodies until the user says otherwise.
    const double height = 2.0 * firstStatorItem()->height();
    if (Numeric::isZero(m_heightOuterEndturn))
        setHeightOuterEndturn(height);
    if (Numeric::isZero(m_heightInnerEndturn))
        setHeightInnerEndturn(height);
}

void WindingObject::updateOverhangLimits()
{
    // End turns must clear the coil cross-section, and a double-layer coil must
    // also pass over the coils inside its span.
    const double width = m_widthWindingCoil;
    const double height = m_heightWindingCoil;
    const double least = isToroidal() ? height : isDoubleLayer() ? (m_coilSpan / 2 + 1) * width : width;
    if (m_autoCalcOverhangEndturns) {
        setRadialOverhangOuterEndturn(least);
        setRadialOverhangInnerEndturn(least);
        return;
    }
    setRadialOverhangOuterEndturn(qMax(m_radialOverhangOuterEndturn, least));
    setRadialOverhangInnerEndturn(qMax(m_radialOverhangInnerEndturn, least));
    setHeightOuterEndturn(qMax(m_heightOuterEndturn, height));
    setHeightInnerEndturn(qMax(m_heightInnerEndturn, height));
}

void WindingObject::setEndturnShapeGenerated(bool generated, bool markModified)
{
    if (generated == m_generateShapes)
        return;
    m_generateShapes = generated;
    emit generatedEndWindingShapesChanged();
    WindingErrors warnings = m_windingWarnings;
    warnings.setFlag(CoreMotorElement::EndWindingStale, !generated);
    setWindingWarnings(warnings);
    if (markModified)
        document()->setModified(true);
}

void WindingObject::dropEndturns()
{
    m_endturns.reset();
    setEndturnShapeGenerated(false, false);
}

void WindingObject::updateWireLength()
{
    if (!m_endturns || m_endturns->isEmpty())
        return;
    QVector<Winding::CoilLength> coils;
    for (const Winding::Endturns &coil : m_endturns->first()) {
        const Winding::Point3 &a = coil.outer.begin.center;
        const Winding::Point3 &b = coil.inner.end.center;
        // An empty path has no length.
        auto pathLength = [](const servoce::shape &path) { return path.is_null() ? 0.0 : path.length(); };
        coils << Winding::CoilLength{coil.phase, pathLength(coil.outer.path), pathLength(coil.inner.path),
                                     std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y)
                                               + (a.z - b.z) * (a.z - b.z))};
    }
    m_phaseWireLengths = Winding::phaseWireLengths(coils, m_numberTurns);
    const double length = m_phaseWireLengths[Winding::A] + m_phaseWireLengths[Winding::B]
                          + m_phaseWireLengths[Winding::C];
    if (qAbs(length - m_wireLength) <= 1e-5)
        return;
    m_wireLength = length;
    announce(&WindingObject::wireLengthChanged);
    updatePhaseResistance();
    scheduleCalcEndInductance();
}

void WindingObject::setMethodCalcEndInductance(const QString &text)
{
    if (text == m_methodCalcEndInductance)
        return;
    m_methodCalcEndInductance = text;
    emit methodCalcEndInductanceChanged();
}

void WindingObject::setAutoCalcEndInductance(bool automatic)
{
    if (automatic == m_autoCalcEndInductance)
        return;
    m_autoCalcEndInductance = automatic;
    announce(&WindingObject::autoCalcEndInductanceChanged);
    if (automatic) {
        m_manualEndInductance = m_endInductance;
        m_manualEndInductanceSet = true;
        setMethodCalcEndInductance(QString());
        scheduleCalcEndInductance();
    } else {
        // A calculation on its way would overwrite the user's value.
        m_calcEndInductanceTimer.stop();
        m_calcEndInductancePending = false;
        setMethodCalcEndInductance(tr("Manual"));
        setEndInductance(m_manualEndInductance);
    }
}

void WindingObject::setEndInductance(double inductance)
{
    // While automatic, a user's value is taken only when the end turns failed.
    if (m_autoCalcEndInductance && !m_windingErrors.testFlag(CoreMotorElement::EndWindingFailed)) {
        qCritical() << "Critical: do not manual set end inductance";
        return;
    }
    if (qFuzzyCompare(inductance, m_endInductance))
        return;
    m_endInductance = inductance;
    announce(&WindingObject::endInductanceChanged);
}

bool WindingObject::hasAllPhases() const
{
    return std::none_of(m_baseLayout.cbegin(), m_baseLayout.cend(),
                        [](const Winding::CoilList &list) { return list.isEmpty(); });
}

void WindingObject::scheduleCalcEndInductance()
{
    if (!m_autoCalcEndInductance || !hasAllPhases() || !document()->isReady())
        return;
    if (!m_calcEndInductanceTimer.isActive()) {
        setMethodCalcEndInductance(tr("Calculation..."));
        m_calcEndInductanceTimer.start();
    }
    m_calcEndInductancePending = true;
}

WindingObject::Inductance WindingObject::calcEndInductance()
{
    if (m_parallelPaths == 0)
        return {};
    updateEndturns();
    const QVector<QVector<Winding::Endturns>> layouts = endturns();
    if (layouts.isEmpty() || layouts.first().isEmpty())
        return {};
    // The coil as a round wire of the same section, m.
    const QVector<StatorItem *> items = document()->stator()->items();
    const double coilArea = items.isEmpty() ? 0.0 : items.first()->areaWindingCoil();
    Winding::EndInductanceInput input;
    input.coilDiameter = 2.0 * std::sqrt(coilArea / m_numberLayers / M_PI) / 1000.0;
    input.numberTurns = m_numberTurns;
    input.parallelPaths = m_parallelPaths;
    input.toroidal = isToroidal();
    // Only the first layout counts: the others repeat it on further faces.
    for (const Winding::Endturns &coil : layouts.first()) {
        input.coils << Winding::CoilEndWires{coil.phase, {coil.outer.ends(), coil.outer.filaments},
                                             {coil.inner.ends(), coil.inner.filaments}};
    }
    return Winding::EndInductanceCalculator(m_console).calcEndInductance(input);
}

void WindingObject::deferCalcEndInductance()
{
    qInfo() << "WindingObject::deferCalcEndInductance()";
    // A file may have made the value manual since the calculation was scheduled.
    const bool calculable = m_autoCalcEndInductance && hasAllPhases()
                             && m_baseLayout.at(Winding::A).size() == m_baseLayout.at(Winding::B).size()
                             && m_baseLayout.at(Winding::B).size() == m_baseLayout.at(Winding::C).size();
    if (calculable) {
        updateEndturns();
        updateWindingErrors();
        const Inductance result = calcEndInductance();
        setMethodCalcEndInductance(result.methodText);
        if (!qFuzzyCompare(result.inner, m_endInductanceInner[0])
            || !qFuzzyCompare(result.outer, m_endInductanceOuter[0])) {
            m_endInductanceInner = {result.inner, result.innerSelf, result.innerMutual};
            m_endInductanceOuter = {result.outer, result.outerSelf, result.outerMutual};
            emit endInductanceInnerOrOuterChanged();
        }
        if (!qFuzzyCompare(result.total, m_endInductance)) {
            m_endInductance = result.total;
            if (!m_manualEndInductanceSet) {
                m_manualEndInductance = result.total;
                m_manualEndInductanceSet = true;
            }
            emit endInductanceChanged();
        }
    }
    m_calcEndInductancePending = false;
}

void WindingObject::setAutoCalcPhaseResistance(bool automatic)
{
    if (automatic == m_autoCalcPhaseResistance)
        return;
    m_autoCalcPhaseResistance = automatic;
    announce(&WindingObject::autoCalcPhaseResistanceChanged);
    if (automatic) {
        m_manualPhaseResistance = m_phaseResistance;
        m_manualPhaseResistanceSet = true;
        updatePhaseResistance();
    } else {
        setPhaseResistance(m_manualPhaseResistance);
    }
}

void WindingObject::setPhaseResistance(double resistance)
{
    if (m_autoCalcPhaseResistance && !m_windingErrors.testFlag(CoreMotorElement::EndWindingFailed))
        return;
    if (qFuzzyCompare(resistance, m_phaseResistance))
        return;
    m_phaseResistance = resistance;
    announce(&WindingObject::phaseResistanceChanged);
}

void WindingObject::setCurrentCoil(const Winding::CurrentCoil &coil)
{
    if (coil == m_currentCoil)
        return;
    m_currentCoil = coil;
    emit currentCoilChanged();
}

bool WindingObject::isUnbalanced() const
{
    if (!m_autoCalcPhaseResistance)
        return false;
    return Winding::isUnbalanced(m_phaseResistances);
}

void WindingObject::updateWindingErrors()
{
    // The end turns keep their own bits.
    WindingErrors errors = m_windingErrors
                           & (CoreMotorElement::InnerFilaments | CoreMotorElement::OuterFilaments
                              | CoreMotorElement::EndWindingFailed);
    if (!isFeasible())
        errors |= CoreMotorElement::SlotPoleNotFeasible;
    if (isSingleLayer() && numberSlots() % 2 != 0)
        errors |= CoreMotorElement::SlotsNotEven;

    const bool slotsUsable = !(errors & (CoreMotorElement::SlotPoleNotFeasible | CoreMotorElement::SlotsNotEven));
    if (slotsUsable && isToroidal() && !Winding::isToroidalLayoutValid(m_baseLayout))
        errors |= CoreMotorElement::LayoutIncorrect;
    if (slotsUsable && !isParallelPathsValid())
        errors |= CoreMotorElement::ParallelPathsIncorrect;
    const bool anyListEmpty = std::any_of(m_baseLayout.cbegin(), m_baseLayout.cend(),
                                          [](const Winding::CoilList &list) { return list.isEmpty(); });
    if (slotsUsable && anyListEmpty)
        errors |= CoreMotorElement::LayoutEmpty;

    if (m_modeLayout == Winding::Manual) {
        for (const Winding::CoilList &list : m_baseLayout) {
            for (const Winding::Coil &coil : list) {
                if (coil.parallelPath > m_parallelPaths)
                    errors |= CoreMotorElement::LayoutParallelPathNumber;
                if (coil.layerFrom >= m_numberLayers || coil.layerTo >= m_numberLayers)
                    errors |= CoreMotorElement::LayoutNumber;
            }
        }
    }

    const bool layoutUsable = slotsUsable && !errors.testFlag(CoreMotorElement::LayoutIncorrect);
    if (layoutUsable && signatureLayouts().contains(QLatin1Char('.')))
        errors |= CoreMotorElement::NotSupported;
    if (layoutUsable && isUnbalanced())
        errors |= CoreMotorElement::Unbalanced;

    if (errors == m_windingErrors)
        return;
    m_windingErrors = errors;
    emit windingErrorsChanged();
}

void WindingObject::clearEndWindingStale()
{
    setWindingWarnings(m_windingWarnings & ~WindingErrors(EndWindingStale));
    if (m_windingErrors.testFlag(EndWindingStale)) {
        m_windingErrors &= ~WindingErrors(EndWindingStale);
        emit windingErrorsChanged();
    }
}

void WindingObject::setWindingWarnings(WindingErrors warnings)
{
    if (warnings == m_windingWarnings)
        return;
    m_windingWarnings = warnings;
    emit windingWarningsChanged();
}

QString WindingObject::elementErrors() const
{
    return elementErrorText(m_windingErrors,
                            {CoreMotorElement::SlotPoleNotFeasible, CoreMotorElement::SlotsNotEven,
                             CoreMotorElement::LayoutIncorrect, CoreMotorElement::ParallelPathsIncorrect,
                             CoreMotorElement::LayoutEmpty, CoreMotorElement::NotSupported,
                             CoreMotorElement::LayoutParallelPathNumber, CoreMotorElement::LayoutNumber,
                             CoreMotorElement::Unbalanced, CoreMotorElement::EndWindingFailed,
                             CoreMotorElement::InnerFilaments, CoreMotorElement::OuterFilaments},
                            objectName(), windingErrorMessage);
}

QString WindingObject::windingWarningsText(bool link) const
{
    QStringList lines;
    // One line says it for both sides.
    if (m_windingWarnings & (CoreMotorElement::InnerEndturnsOverlap | CoreMotorElement::OuterEndturnsOverlap))
        lines << windingErrorMessage(CoreMotorElement::InnerEndturnsOverlap);
    if (m_windingWarnings.testFlag(CoreMotorElement::EndWindingStale)) {
        const QString stale = windingErrorMessage(CoreMotorElement::EndWindingStale);
        lines << (link ? tr("%1, <a href=\"generate\"><span style=\"text-decoration: underline; "
                            "color:#0000ff;\">click to generate end winding</span></a>")
                             .arg(stale)
                       : stale);
    }
    return lines.join(link ? QStringLiteral("<br>") : QStringLiteral("\n"));
}

QVariantMap WindingObject::properties() const
{
    const QVariantMap map{
        {QStringLiteral("type"), Winding::toString(m_type)},
        {QStringLiteral("numberLayers"), Winding::numberLayersString(m_numberLayers)},
        {QStringLiteral("layersOrientation"), Winding::toString(m_layersOrientation)},
        {QStringLiteral("wireSizeMethod"), Winding::toString(m_wireSizeMethod)},
        {QStringLiteral("wireGaugeNumber"), m_wireSize},
        {QStringLiteral("fillfactor"), coilFillFactor()},
        {QStringLiteral("strandDiameter"), wireDiameter()},
        {QStringLiteral("statorcircuit"), Winding::toString(m_circuit)},
        {QStringLiteral("Npp"), m_parallelPaths},
        {QStringLiteral("numberTurns"), m_numberTurns},
        {QStringLiteral("nstrands"), m_strandsConductor},
        {QStringLiteral("coilSpan"), m_coilSpan},
        {QStringLiteral("Lsew"), m_autoCalcEndInductance ? QVariant(autoText) : QVariant(m_endInductance)},
        {QStringLiteral("Rs"), m_autoCalcPhaseResistance ? QVariant(autoText) : QVariant(m_phaseResistance)},
        {QStringLiteral("statorconnection"), m_countLayouts < 2 ? QString() : m_connection},
    };
    qDebug() << "Get WindingObject::properties:" << map;
    return map;
}

void WindingObject::setProperties(const QVariantMap &map)
{
    if (map.isEmpty())
        return;
    qDebug() << "WindingObject::setProperties:" << map;
    auto text = [&map](const char *key) { return map.value(QLatin1String(key)).toString(); };
    auto count = [&map](const char *key) { return qMax(1, map.value(QLatin1String(key)).toInt()); };

    setType(Winding::fromString(text("type"), m_type));
    setNumberLayers(Winding::numberLayersFromString(text("numberLayers"), m_numberLayers));
    setLayersOrientation(Winding::fromString(text("layersOrientation"), m_layersOrientation));
    setWireSizeMethod(Winding::fromString(text("wireSizeMethod"), m_wireSizeMethod));
    setWireSize(text("wireGaugeNumber"));

    bool isNumber = false;
    double fillFactor = text("fillfactor").toDouble(&isNumber);
    if (!isNumber)
        fillFactor = 0.3;
    setCoilFillFactor(qBound(0.0, fillFactor, 1.0));
    setWireDiameter(qMax(0.0, text("strandDiameter").toDouble()));

    setCircuit(Winding::fromString(text("statorcircuit"), m_circuit));
    setParallelPaths(count("Npp"));
    setNumberTurns(count("numberTurns"));
    setStrandsConductor(count("nstrands"));

    if (isOrientationLeftRight() || isToroidal()) {
        // Such coils always span one slot.
        if (!m_autoCalcCoilSpan)
            setCoilSpan(1);
    } else {
        const int span = text("coilSpan").toInt(&isNumber);
        setAutoCalcCoilSpan(!isNumber);
        setCoilSpan(span);
    }

    const double inductance = text("Lsew").toDouble(&isNumber);
    setAutoCalcEndInductance(!isNumber);
    if (isNumber)
        setEndInductance(inductance);
    const double resistance = text("Rs").toDouble(&isNumber);
    setAutoCalcPhaseResistance(!isNumber);
    if (isNumber)
        setPhaseResistance(resistance);

    setConnection(Winding::normalizeConnection(text("statorconnection"), m_countLayouts));
    scheduleCalcEndInductance();
}

// Enumerations travel as their 32-bit value. The block grew over the versions; each
// reader below takes what its version holds and leaves the rest as it is.
void WindingObject::save(QDataStream &out) const
{
    const bool endturnsGeneratedOrStale = m_generateShapes
                                          || m_windingWarnings.testFlag(CoreMotorElement::EndWindingStale);
    out << streamVersion << m_circuit << m_connection << m_parallelPaths << m_numberTurns << m_strandsConductor
        << m_wireSizeMethod << m_wireSize << m_givenWireDiameter << m_givenCoilFillFactor << m_slotFillFactor
        << m_baseLayout << m_coilLayouts << m_modeLayout << m_reverseLayersLayouts << m_coilSpan
        << m_autoCalcCoilSpan << m_type << m_numberLayers << m_layersOrientation << m_autoCalcEndInductance
        << m_endInductance << m_autoCalcPhaseResistance << m_phaseResistance << m_wireLength << m_endturnsScript
        << m_autoCalcOverhangEndturns << m_radialOverhangOuterEndturn << m_radialOverhangInnerEndturn
        << m_heightOuterEndturn << m_heightInnerEndturn << endturnsGeneratedOrStale;
}

bool WindingObject::load(QDataStream &in)
{
    qint32 version = 0;
    in >> version;
    if (version > streamVersion)
        return false;
    in >> m_circuit;
    loadConnection(in, version);
    in >> m_parallelPaths >> m_numberTurns >> m_strandsConductor >> m_wireSizeMethod >> m_wireSize;
    rememberWireSize();
    in >> m_givenWireDiameter >> m_givenCoilFillFactor >> m_slotFillFactor;
    loadLayouts(in, version);
    in >> m_modeLayout;
    if (version >= 6)
        loadReverseLayers(in);
    in >> m_coilSpan >> m_autoCalcCoilSpan;
    if (version >= 13)
        in >> m_type;
    in >> m_numberLayers >> m_layersOrientation;
    if (version >= 4)
        loadLumpedValues(in);
    loadEndturnSettings(in, version);
    if (version >= 12) {
        // Generated shapes don't outlive the file: they are stale after any load.
        bool endturnsGeneratedOrStale = false;
        in >> endturnsGeneratedOrStale;
    }
    if (!hasKnownSettings()) {
        // The winding's tables are indexed by these; damage must not reach them, not
        // even in a winding whose load failed further on.
        m_circuit = Winding::Star;
        m_wireSizeMethod = Winding::AWG;
        m_modeLayout = Winding::Automatic;
        m_type = Winding::Planar;
        m_numberLayers = 1;
        m_layersOrientation = Winding::UpperLower;
        if (in.status() == QDataStream::Ok)
            StreamChecks::refuse(in, QStringLiteral("a setting of the winding (its type, circuit, layers or wire "
                                                    "size method) is outside the values a design may have"));
    }
    if (in.status() != QDataStream::Ok)
        return true;
    settleAfterLoad();
    return true;
}

bool WindingObject::hasKnownSettings() const
{
    const auto within = [](int value, int first, int last) { return value >= first && value <= last; };
    return within(m_circuit, Winding::Star, Winding::Delta)
        && within(m_wireSizeMethod, Winding::AWG, Winding::WireDiameter)
        && within(m_modeLayout, Winding::Automatic, Winding::Manual)
        && within(m_type, Winding::Planar, Winding::Toroidal) && within(m_numberLayers, 1, 2)
        && within(m_layersOrientation, Winding::UpperLower, Winding::LeftRight);
}

void WindingObject::loadReverseLayers(QDataStream &in)
{
    quint32 count = 0;
    in >> count;
    if (in.status() != QDataStream::Ok || !StreamChecks::countFits(in, count, 1))
        return;
    QVector<bool> reverse;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        bool flag = false;
        in >> flag;
        reverse.append(flag);
    }
    if (in.status() == QDataStream::Ok)
        m_reverseLayersLayouts = reverse;
}

void WindingObject::loadConnection(QDataStream &in, int version)
{
    if (version != 4) {
        in >> m_connection;
        return;
    }
    Winding::Connection connection = Winding::UnknownConnection;
    in >> connection;
    m_connection = Winding::toString(connection);
}

void WindingObject::loadLayouts(QDataStream &in, int version)
{
    // Version 1 knew only the base layout, version 2 only the layouts of the faces.
    if (version != 2)
        in >> m_baseLayout;
    if (version == 1)
        return;
    quint32 count = 0;
    in >> count;
    // A layout takes at least its own count.
    if (in.status() != QDataStream::Ok || !StreamChecks::countFits(in, count, 4))
        return;
    m_coilLayouts.clear();
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        Winding::Layout layout;
        in >> layout;
        m_coilLayouts.append(layout);
    }
    if (version == 2 && !m_coilLayouts.isEmpty())
        m_baseLayout = m_coilLayouts.first();
}

void WindingObject::loadLumpedValues(QDataStream &in)
{
    in >> m_autoCalcEndInductance >> m_endInductance >> m_autoCalcPhaseResistance >> m_phaseResistance;
    m_manualEndInductance = m_endInductance;
    m_manualEndInductanceSet = true;
    m_manualPhaseResistance = m_phaseResistance;
    m_manualPhaseResistanceSet = true;
    setMethodCalcEndInductance(m_autoCalcEndInductance ? QString() : tr("Manual"));
}

void WindingObject::loadEndturnSettings(QDataStream &in, int version)
{
    if (version >= 11) {
        in >> m_wireLength >> m_endturnsScript >> m_autoCalcOverhangEndturns >> m_radialOverhangOuterEndturn
            >> m_radialOverhangInnerEndturn >> m_heightOuterEndturn >> m_heightInnerEndturn;
        m_autoCalcOverhangEndturnsWish = m_autoCalcOverhangEndturns;
        // Whether manual or automatic, the stored values are where a switch to
        // manual starts from.
        keepManualOverhangs();
        return;
    }
    // Versions 7 to 10 added these one by one, with fields between them that
    // nothing uses any more.
    bool droppedFlag = false;
    qint32 droppedNumber = 0;
    if (version >= 7)
        in >> m_wireLength >> droppedFlag;
    if (version >= 8)
        in >> m_radialOverhangOuterEndturn;
    if (version >= 9)
        in >> droppedFlag >> m_radialOverhangInnerEndturn;
    if (version >= 10)
        in >> droppedNumber >> droppedNumber;
}

void WindingObject::settleAfterLoad()
{
    m_generateShapes = false;
    setWindingWarnings(m_windingWarnings | CoreMotorElement::EndWindingStale);

    if (isSingleLayer() || isOrientationLeftRight()) {
        // For the moment: the automatic layout works the span out.
        m_autoCalcCoilSpan = true;
        m_coilSpan = 1;
    }
    m_coilSpan = layoutSettings().clippedCoilSpan(m_coilSpan);
    // Orientations aren't stored, an automatic layout follows from the settings and
    // the layouts of the faces from the base layout: all are worked out again.
    fillBaseLayout();

    updateCountLayouts();
    makeLayouts();
    if (m_countLayouts == 1)
        m_connection.clear();
    // The wire follows from the settings just read, not from those it replaced.
    updateWireDiameter();
    updateWindingErrors();
}
