#pragma once

#include <QJSValue>
#include <QString>
#include <QTimer>
#include <QVariantMap>
#include <QVector>
#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "document/CoreMotorElement.h"
#include "geometry/Endturn.h"
#include "winding/EndInductance.h"
#include "winding/LayoutSettings.h"
#include "winding/LayoutText.h"
#include "winding/Winding.h"
#include "winding/WireResistance.h"

class FileWatcher;
class JSEngine;
class QDataStream;
class ScriptConsole;
class StatorItem;

// The stator winding of a document: its kind, its coils in the slots of every
// stator face, the wire, the end-turn settings and the lumped values. Values with
// an automatic and a manual form keep both; the property gives the effective one.
class WindingObject : public CoreMotorElement
{
    Q_OBJECT
    Q_PROPERTY(Winding::Circuit circuit READ circuit WRITE setCircuit NOTIFY circuitChanged)
    Q_PROPERTY(QString connection READ connection WRITE setConnection NOTIFY connectionChanged)
    Q_PROPERTY(int parallelPaths READ parallelPaths WRITE setParallelPaths NOTIFY parallelPathsChanged)
    Q_PROPERTY(int numberTurns READ numberTurns WRITE setNumberTurns NOTIFY numberTurnsChanged)
    Q_PROPERTY(int strandsConductor READ strandsConductor WRITE setStrandsConductor NOTIFY strandsConductorChanged)
    Q_PROPERTY(Winding::WireSizeMethod wireSizeMethod READ wireSizeMethod WRITE setWireSizeMethod NOTIFY wireSizeMethodChanged)
    Q_PROPERTY(QString wireSize READ wireSize WRITE setWireSize NOTIFY wireSizeChanged)
    Q_PROPERTY(double wireDiameter READ wireDiameter WRITE setWireDiameter NOTIFY wireDiameterChanged)
    Q_PROPERTY(double coilFillFactor READ coilFillFactor WRITE setCoilFillFactor NOTIFY coilFillFactorChanged)
    Q_PROPERTY(double fillFactor READ coilFillFactor WRITE setCoilFillFactor NOTIFY coilFillFactorChanged)
    Q_PROPERTY(double slotFillFactor READ slotFillFactor WRITE setSlotFillFactor NOTIFY slotFillFactorChanged)
    Q_PROPERTY(Winding::Type type READ type WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(int numberLayers READ numberLayers WRITE setNumberLayers NOTIFY numberLayersChanged)
    Q_PROPERTY(Winding::LayersOrientation layersOrientation READ layersOrientation WRITE setLayersOrientation NOTIFY layersOrientationChanged)
    Q_PROPERTY(int coilSpan READ coilSpan WRITE setCoilSpan NOTIFY coilSpanChanged)
    Q_PROPERTY(bool autoCalcCoilSpan READ autoCalcCoilSpan WRITE setAutoCalcCoilSpan NOTIFY autoCalcCoilSpanChanged)
    Q_PROPERTY(Winding::ModeLayout modeLayout READ modeLayout WRITE setModeLayout NOTIFY modeLayoutChanged)
    Q_PROPERTY(Winding::Layout layout READ layout WRITE setLayout NOTIFY layoutsChanged)
    Q_PROPERTY(QString endturnsScript READ endturnsScript WRITE setEndturnsScript NOTIFY endturnsScriptChanged)
    Q_PROPERTY(bool autoCalcOverhangEndturns READ autoCalcOverhangEndturns WRITE setAutoCalcOverhangEndturns NOTIFY autoCalcOverhangEndturnsChanged)
    Q_PROPERTY(double radialOverhangOuterEndturn READ radialOverhangOuterEndturn WRITE setRadialOverhangOuterEndturn NOTIFY radialOverhangOuterEndturnChanged)
    Q_PROPERTY(double radialOverhangOuterEnd READ radialOverhangOuterEndturn WRITE setRadialOverhangOuterEndturn NOTIFY radialOverhangOuterEndturnChanged)
    Q_PROPERTY(double radialOverhangInnerEndturn READ radialOverhangInnerEndturn WRITE setRadialOverhangInnerEndturn NOTIFY radialOverhangInnerEndturnChanged)
    Q_PROPERTY(double radialOverhangInnerEnd READ radialOverhangInnerEndturn WRITE setRadialOverhangInnerEndturn NOTIFY radialOverhangInnerEndturnChanged)
    Q_PROPERTY(double heightOuterEndturn READ heightOuterEndturn WRITE setHeightOuterEndturn NOTIFY heightOuterEndturnChanged)
    Q_PROPERTY(double heightInnerEndturn READ heightInnerEndturn WRITE setHeightInnerEndturn NOTIFY heightInnerEndturnChanged)
    Q_PROPERTY(bool autoCalcEndInductance READ autoCalcEndInductance WRITE setAutoCalcEndInductance NOTIFY autoCalcEndInductanceChanged)
    Q_PROPERTY(double endInductance READ endInductance WRITE setEndInductance NOTIFY endInductanceChanged)
    Q_PROPERTY(QString methodCalcEndInductance READ methodCalcEndInductance NOTIFY methodCalcEndInductanceChanged)
    Q_PROPERTY(bool autoCalcPhaseResistance READ autoCalcPhaseResistance WRITE setAutoCalcPhaseResistance NOTIFY autoCalcPhaseResistanceChanged)
    Q_PROPERTY(double phaseResistance READ phaseResistance WRITE setPhaseResistance NOTIFY phaseResistanceChanged)
    Q_PROPERTY(double wireLength READ wireLength NOTIFY wireLengthChanged)
    Q_PROPERTY(QVector<bool> reverseLayersLayouts READ reverseLayersLayouts WRITE setReverseLayersLayouts NOTIFY reverseLayersLayoutsChanged)
    Q_PROPERTY(QVariantMap properties READ properties WRITE setProperties NOTIFY windingChanged)

public:
    using Inductance = Winding::Inductance;
    // One side of the end turns: its inductance, its self part and its mutual part, H.
    using InductanceParts = std::array<double, 3>;

    explicit WindingObject(Document *document);
    ~WindingObject() override;

    ScriptConsole *console() const { return m_console; }

    Winding::Circuit circuit() const { return m_circuit; }
    void setCircuit(Winding::Circuit circuit);
    QString connection() const { return m_connection; }
    void setConnection(const QString &connection);
    int parallelPaths() const { return m_parallelPaths; }
    void setParallelPaths(int parallelPaths);
    int numberTurns() const { return m_numberTurns; }
    void setNumberTurns(int numberTurns);
    int strandsConductor() const { return m_strandsConductor; }
    void setStrandsConductor(int strands);

    Winding::WireSizeMethod wireSizeMethod() const { return m_wireSizeMethod; }
    void setWireSizeMethod(Winding::WireSizeMethod method);
    QString wireSize() const { return m_wireSize; }
    void setWireSize(const QString &name);
    double wireDiameter() const;
    void setWireDiameter(double diameter);
    double coilFillFactor() const;
    void setCoilFillFactor(double factor);
    double slotFillFactor() const { return m_slotFillFactor; }
    void setSlotFillFactor(double factor);
    // The diameter of the gauge, or the one that fills the coil to the given factor.
    void updateWireDiameter();
    // The fill factors that the wire gives the coil and the slot of the first stator body.
    void updateFillFactors();
    // The resistance of each phase from its wire, the conductor and its temperature.
    void updatePhaseResistance();
    std::array<double, Winding::Count> phaseResistances() const { return m_phaseResistances; }

    Winding::Type type() const { return m_type; }
    void setType(Winding::Type type);
    int numberLayers() const { return m_numberLayers; }
    void setNumberLayers(int numberLayers);
    Winding::LayersOrientation layersOrientation() const { return m_layersOrientation; }
    void setLayersOrientation(Winding::LayersOrientation orientation);
    bool isPlanar() const { return m_type == Winding::Planar; }
    bool isToroidal() const { return m_type == Winding::Toroidal; }
    bool isSingleLayer() const { return m_numberLayers == 1; }
    bool isDoubleLayer() const { return m_numberLayers == 2; }
    bool isOrientationUpperLower() const { return m_layersOrientation == Winding::UpperLower; }
    bool isOrientationLeftRight() const { return m_layersOrientation == Winding::LeftRight; }
    // The layers that a layout has in a slot position: a toroidal coil always has two sides there.
    int effectiveNumberLayers() const { return isToroidal() ? 2 : m_numberLayers; }

    int coilSpan() const { return m_coilSpan; }
    void setCoilSpan(int span);
    bool autoCalcCoilSpan() const { return m_autoCalcCoilSpan; }
    void setAutoCalcCoilSpan(bool automatic);

    Winding::ModeLayout modeLayout() const { return m_modeLayout; }
    void setModeLayout(Winding::ModeLayout mode);
    // The base layout: the only one that is edited; the others derive from it.
    Winding::Layout layout() const { return m_baseLayout; }
    void setLayout(const Winding::Layout &layout);
    QVector<Winding::Layout> coilLayouts() const { return m_coilLayouts; }
    int countLayouts() const { return m_countLayouts; }
    void updateCountLayouts();
    // The id of the stator body whose face the layout lies on.
    int statorItemOfLayout(int index) const;
    // Generates the base layout; a manual one keeps its coils and only takes the span.
    void fillBaseLayout();
    // Brings the base layout and the layouts of the faces up to date and tells what changed.
    void updateLayouts();
    QVector<bool> reverseLayersLayouts() const { return m_reverseLayersLayouts; }
    void setReverseLayersLayouts(const QVector<bool> &reverse);
    void setReverseLayerLayout(int index, bool reverse);

    // The slots, poles and settings that the layout is made from.
    Winding::LayoutSettings layoutSettings() const;
    bool isFeasible() const;
    bool isParallelPathsValid() const;
    // Every slot of the base layout holds a coil side, none more than it has layers.
    bool isBalanced() const;
    double calcWindingFactor(int harmonic) const;
    // What lies in each slot position, two characters a coil side; the document
    // finds the machine's symmetry in it.
    QString signatureLayouts() const;
    QString layoutsToText() const;
    bool saveLayoutsToFile(const QString &path) const;
    // The marks of the slot picture of one layout, at effective layers x slot + layer.
    QVector<Winding::SlotMark> slotMarks(int layoutIndex) const;

    QString endturnsScript() const { return m_endturnsScript; }
    void setEndturnsScript(const QString &script);
    bool autoCalcOverhangEndturns() const { return m_autoCalcOverhangEndturns; }
    void setAutoCalcOverhangEndturns(bool automatic);
    double radialOverhangOuterEndturn() const { return m_radialOverhangOuterEndturn; }
    void setRadialOverhangOuterEndturn(double overhang);
    double radialOverhangInnerEndturn() const { return m_radialOverhangInnerEndturn; }
    void setRadialOverhangInnerEndturn(double overhang);
    double heightOuterEndturn() const { return m_heightOuterEndturn; }
    void setHeightOuterEndturn(double height);
    double heightInnerEndturn() const { return m_heightInnerEndturn; }
    void setHeightInnerEndturn(double height);
    // The coil cross-section, told by the first stator body: the least overhang and height.
    double widthWindingCoil() const { return m_widthWindingCoil; }
    void setWidthWindingCoil(double width);
    double heightWindingCoil() const { return m_heightWindingCoil; }
    void setHeightWindingCoil(double height);

    QString endturnsScriptPath() const;
    // Reads the end-turn script into a new engine of the winding; its faults go to the console.
    bool loadEndturnScript();
    bool isEndturnScriptLoaded() const { return m_scriptLoaded; }
    // Reads the end-turn script afresh and, when it loads, makes the end turns again: what
    // a change of the file does, on the user's request.
    void reReadEndturnScript();
    // Set while the end-turn script is read or runs, so that it can't start a rebuild.
    bool isScriptRunning() const { return m_scriptRunning; }
    // Asks the script for the paths of the coils of one layout, numbered from 1, and
    // checks them: a coil end keeps a path only when it meets both slot centres. False
    // when a coil end is left without a path.
    bool calcEndturnPaths(int layoutNumber, double innerRadius, double outerRadius,
                          QVector<Winding::Endturns> &coils);

    // Makes the coil ends of every layout and asks the script for their paths, once the
    // document is ready and as long as none are kept.
    void updateEndturns();
    bool hasEndturns() const { return m_endturns.has_value(); }
    // One list of coils for each layout; empty lists when the layouts or pieces are.
    QVector<QVector<Winding::Endturns>> endturns() const
    {
        return m_endturns.value_or(QVector<QVector<Winding::Endturns>>());
    }
    // The wire of each phase from the end turns of the first layout.
    void updateWireLength();
    std::array<double, Winding::Count> phaseWireLengths() const { return m_phaseWireLengths; }

    bool isEndturnShapeGenerated() const { return m_generateShapes; }
    void setEndturnShapeGenerated(bool generated, bool markModified = true);
    // Any change of what the end turns rest on makes them stale.
    void dropEndturns();

    bool autoCalcEndInductance() const { return m_autoCalcEndInductance; }
    void setAutoCalcEndInductance(bool automatic);
    double endInductance() const { return m_endInductance; }
    void setEndInductance(double inductance);
    QString methodCalcEndInductance() const { return m_methodCalcEndInductance; }
    // The end-winding inductance of a phase from the end turns of the first layout.
    Inductance calcEndInductance();
    InductanceParts endInductanceInner() const { return m_endInductanceInner; }
    InductanceParts endInductanceOuter() const { return m_endInductanceOuter; }
    // Set from the scheduling of a calculation until it has run.
    bool isCalcEndInductancePending() const { return m_calcEndInductancePending; }
    bool autoCalcPhaseResistance() const { return m_autoCalcPhaseResistance; }
    void setAutoCalcPhaseResistance(bool automatic);
    double phaseResistance() const { return m_phaseResistance; }
    void setPhaseResistance(double resistance);
    double wireLength() const { return m_wireLength; }

    Winding::CurrentCoil currentCoil() const { return m_currentCoil; }
    void setCurrentCoil(const Winding::CurrentCoil &coil);

    WindingErrors windingErrors() const { return m_windingErrors; }
    WindingErrors windingWarnings() const { return m_windingWarnings; }
    void updateWindingErrors();
    // A parent program takes the design as it is: stale end windings are no fault then.
    void clearEndWindingStale();
    QString elementErrors() const;
    // The warnings in lines; with links, rich text whose links name what they ask for.
    QString windingWarningsText(bool link) const;

    QVariantMap properties() const;
    void setProperties(const QVariantMap &map);

    // The winding's block of a document file. load reads every version ever
    // written; it returns false, having changed nothing, for a newer one.
    void save(QDataStream &out) const;
    bool load(QDataStream &in);

public slots:
    // Works the automatic end inductance out and takes it.
    void deferCalcEndInductance();

    // What the end-turn script asks to judge its own paths. Faults of the arguments are
    // thrown into the winding's engine, where the script runs.
    // The smallest distance between the paths of any two end-turn objects.
    double distanceBetweenEndturns(const QJSValue &items);
    // { p1, p2 }: the closest points of two shapes.
    QJSValue extremaBetweenEndturns(const QJSValue &first, const QJSValue &second);
    // Placeholders that scripts may call: always true, always 0.
    bool checkOverlapEndturns(const QJSValue &items);
    double volumeOverlapEndturns(const QJSValue &items);

signals:
    void circuitChanged();
    void connectionChanged();
    void parallelPathsChanged();
    void numberTurnsChanged();
    void strandsConductorChanged();
    void wireSizeMethodChanged();
    void wireSizeChanged();
    void wireDiameterChanged();
    void coilFillFactorChanged();
    void slotFillFactorChanged();
    void showAreaCoilFillFactorChanged();
    void showAreaSlotFillFactorChanged();
    void typeChanged();
    void numberLayersChanged();
    void layersOrientationChanged();
    void coilSpanChanged();
    void autoCalcCoilSpanChanged();
    void countLayoutsChanged();
    void modeLayoutChanged();
    void layoutsChanged();
    void reverseLayersLayoutsChanged();
    void autoCalcOverhangEndturnsChanged();
    void radialOverhangOuterEndturnChanged();
    void radialOverhangInnerEndturnChanged();
    void heightOuterEndturnChanged();
    void heightInnerEndturnChanged();
    void endturnsScriptChanged();
    void endturnsScriptLoaded();
    void endturnsChanged();
    void wireLengthChanged();
    void autoCalcEndInductanceChanged();
    void endInductanceChanged();
    void methodCalcEndInductanceChanged();
    void endInductanceInnerOrOuterChanged();
    void autoCalcPhaseResistanceChanged();
    void phaseResistanceChanged();
    void windingChanged();
    void windingErrorsChanged();
    void windingWarningsChanged();
    void createSceneWindingStarted();
    void createSceneWindingFinished();
    void generatedEndWindingShapesChanged();
    void currentCoilChanged();
    void widthWindingCoilChanged();
    void heightWindingCoilChanged();

private:
    // The winding's own signal, then windingChanged, then the document is modified.
    template <typename Signal>
    void announce(Signal signal);
    // The same for an overhang, which marks the document only when the user set it.
    template <typename Signal>
    void announceOverhang(Signal signal);
    int numberSlots() const;
    // A yokeless body or a toroidal winding has one layout for both faces of a body.
    bool isOnePerBody() const;
    void storeCoilSpan(int span);
    void limitCoilSpan();
    void rememberWireSize();
    void setMethodCalcEndInductance(const QString &text);
    // Many changes come together: the calculation runs once, a little later.
    void scheduleCalcEndInductance();
    bool hasAllPhases() const;
    void applyAutoCalcOverhangEndturns(bool automatic);
    void keepManualOverhangs();
    void followOverhangRule();
    void updateOverhangLimits();
    void makeLayouts();
    void watchEndturnScript(const QString &path);
    void reloadEndturnScript(const QString &announcement);
    bool isUnbalanced() const;
    // The first stator body, which measures the coil and slot areas.
    StatorItem *firstStatorItem() const;
    bool hasWindingPieces() const;
    Winding::CoilWire coilWire() const;
    // After a change of turns, strands or paths: the method's dependent value follows.
    void followWireCount();
    void updateSlotFillFactorOfGivenCoilFillFactor();
    void storeSlotFillFactor(double factor);
    void giveHeightsTheirDefault();
    void endturnScriptFailure(const QString &message) const;
    // Logs the fault of a call from the script and throws it into the script.
    void throwScriptError(const QString &message) const;
    // The paths of the end-turn objects of a script, null ones left out; false, the
    // fault thrown, when an item lacks a part of an end turn.
    bool readEndturnItems(const QJSValue &items, std::vector<servoce::shape> &paths) const;
    // The overlap flags of a script's result for one layout; later layouts add theirs.
    void takeOverlapWarnings(int layoutNumber, const QJSValue &result);
    void makeEndturns(QVector<QVector<Winding::Endturns>> &all);
    QJSValue endturnsToScript(const QVector<Winding::Endturns> &coils) const;
    // Takes the script's path of one coil end; false when it had a fault to report.
    bool takePath(int layoutNumber, Winding::Phase phase, const servoce::shape &path, Winding::Endturn &endturn) const;
    void setWindingWarnings(WindingErrors warnings);
    void loadConnection(QDataStream &in, int version);
    void loadLayouts(QDataStream &in, int version);
    void loadReverseLayers(QDataStream &in);
    // Whether the enumerations and the layer count read from a file are ones the winding knows.
    bool hasKnownSettings() const;
    void loadLumpedValues(QDataStream &in);
    void loadEndturnSettings(QDataStream &in, int version);
    void settleAfterLoad();

    ScriptConsole *m_console;
    FileWatcher *m_watcher;
    QString m_watchedScript;
    std::unique_ptr<JSEngine> m_engine;
    bool m_scriptLoaded = false;
    bool m_scriptRunning = false;

    Winding::Circuit m_circuit = Winding::Star;
    QString m_connection = QStringLiteral("UnknownConnection");
    int m_parallelPaths = 1;
    int m_numberTurns = 1;
    int m_strandsConductor = 1;
    Winding::WireSizeMethod m_wireSizeMethod = Winding::AWG;
    QString m_wireSize = QStringLiteral("25 AWG");
    QString m_lastAwgName = QStringLiteral("25 AWG");
    QString m_lastSwgName = QStringLiteral("25 SWG");
    double m_computedWireDiameter = 0.0;
    double m_givenWireDiameter = 0.5;
    double m_computedCoilFillFactor = 0.0;
    double m_givenCoilFillFactor = 0.9;
    double m_slotFillFactor = 0.0;
    Winding::Type m_type = Winding::Planar;
    int m_numberLayers = 1;
    Winding::LayersOrientation m_layersOrientation = Winding::UpperLower;
    int m_coilSpan = 0;
    bool m_autoCalcCoilSpan = true;
    Winding::ModeLayout m_modeLayout = Winding::Automatic;
    Winding::Layout m_baseLayout;
    QString m_endturnsScript = QStringLiteral("WindingEndturns.js");
    bool m_autoCalcOverhangEndturns = true;
    // The user's wish, kept while a single-layer winding of a wide span can't have it.
    bool m_autoCalcOverhangEndturnsWish = true;
    double m_radialOverhangOuterEndturn = 0.0;
    double m_radialOverhangInnerEndturn = 0.0;
    double m_heightOuterEndturn = 0.0;
    double m_heightInnerEndturn = 0.0;
    // The manual values, kept while the overhang is automatic.
    double m_manualRadialOverhangOuterEndturn = 0.0;
    double m_manualRadialOverhangInnerEndturn = 0.0;
    double m_manualHeightOuterEndturn = 0.0;
    double m_manualHeightInnerEndturn = 0.0;
    bool m_autoCalcEndInductance = true;
    double m_endInductance = 0.0;
    double m_manualEndInductance = 0.0;
    // The first automatic inductance is also where a switch to manual starts from.
    bool m_manualEndInductanceSet = false;
    QString m_methodCalcEndInductance;
    InductanceParts m_endInductanceInner{};
    InductanceParts m_endInductanceOuter{};
    QTimer m_calcEndInductanceTimer;
    bool m_calcEndInductancePending = false;
    bool m_autoCalcPhaseResistance = true;
    double m_phaseResistance = 0.0;
    double m_manualPhaseResistance = 0.0;
    // The first automatic resistance is also where a switch to manual starts from.
    bool m_manualPhaseResistanceSet = false;
    double m_wireLength = 0.0;
    QVector<Winding::Layout> m_coilLayouts = QVector<Winding::Layout>(4);
    int m_countLayouts = 1;
    QVector<bool> m_reverseLayersLayouts = QVector<bool>(4, false);
    std::array<double, Winding::Count> m_phaseWireLengths{};
    std::array<double, Winding::Count> m_phaseResistances{};
    Winding::CurrentCoil m_currentCoil;
    WindingErrors m_windingErrors;
    WindingErrors m_windingWarnings;
    bool m_generateShapes = false;
    // Absent: the end turns must be made.
    std::optional<QVector<QVector<Winding::Endturns>>> m_endturns;
    double m_widthWindingCoil = 0.0;
    double m_heightWindingCoil = 0.0;
};
