#pragma once

#include <QAtomicInteger>
#include <QByteArray>
#include <QDataStream>
#include <QHash>
#include <QImage>
#include <mutex>
#include <QObject>
#include <QPair>
#include <QPointF>
#include <QVariant>
#include <QVector>
#include <memory>
#include <functional>

#include "base/Machine.h"
#include "geometry/Piece.h"
#include "geometry/SimDomain.h"

class Airgap;
class ConfigObject;
class DriveSettings;
class FileWatcher;
class JSEngine;
class MagnetostaticAnalysis;
class MotorItem;
class QQmlError;
class Mesh;
class RatedData;
class Rotor;
class ScriptConsole;
class Stator;
class UndoCommand;
class UndoStack;
class WindingObject;

// The design of one machine: owns its elements, the undo stack and the simulation
// data, and holds the states that decide what may be changed.
class Document : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Machine::Type machineType READ machineType WRITE setMachineType NOTIFY machineTypeChanged)
    Q_PROPERTY(QObject *stator READ statorObject CONSTANT)
    Q_PROPERTY(QObject *rotor READ rotorObject CONSTANT)
    Q_PROPERTY(QObject *airgap READ airgapObject CONSTANT)
    Q_PROPERTY(QObject *winding READ windingObject CONSTANT)
    Q_PROPERTY(QObject *mesh READ meshObject CONSTANT)
    Q_PROPERTY(double height READ height)
    Q_PROPERTY(int periodicity READ periodicity NOTIFY periodicityChanged)
    Q_PROPERTY(double periodicityAngleSpan READ periodicityAngleSpan NOTIFY periodicityChanged)
    Q_PROPERTY(BoundaryConditionMode boundaryConditionMode READ boundaryConditionMode WRITE setBoundaryConditionMode NOTIFY boundaryConditionModeChanged)
    Q_PROPERTY(BoundaryCondition boundaryCondition READ boundaryCondition WRITE setBoundaryCondition NOTIFY boundaryConditionChanged)
    Q_PROPERTY(SimDomain simDomain READ simDomain)
    Q_PROPERTY(double simRadialOuterDomain READ simRadialOuterDomain)

public:
    enum Mode {
        UnknownMode = -1,
        GeometryMotor = 0,
        GeometryStator = 1,
        GeometryRotor = 2,
        Winding = 3,
        Mesh2D = 4,
        Mesh3D = 5,
        AnalysisMagnetostatic = 6,
        AnalysisDynamicFEA = 7,
        AnalysisSteadyState = 8,
        AnalysisDynamicDQ = 9,
    };
    Q_ENUM(Mode)

    enum BoundaryConditionMode {
        Automatic = 0,
        Manual = 1,
    };
    Q_ENUM(BoundaryConditionMode)

    // Ordered by strength: a greater value is a weaker condition.
    enum BoundaryCondition {
        UnknownBoundaryCondition = -1,
        Antiperiodic = 0,
        Periodic = 1,
        None = 2,
    };
    Q_ENUM(BoundaryCondition)

    using Periodicity = QPair<int, BoundaryCondition>;

    explicit Document(QObject *parent = nullptr);
    ~Document() override;

    void start();
    bool isStarted() const { return m_started; }

    // States
    QString filePath() const { return m_filePath; }
    void setFilePath(const QString &path) { m_filePath = path; }
    bool showMessageBoxes() const { return m_showMessageBoxes; }
    void setShowMessageBoxes(bool show) { m_showMessageBoxes = show; }
    bool isModified() const { return m_modified.loadAcquire(); }
    void setModified(bool modified);
    bool isPreparing() const { return m_preparing; }
    void setPreparing(bool preparing) { m_preparing = preparing; }
    bool isReady() const { return m_ready; }
    // A new or loaded document becomes ready to track its changes.
    void markAsMade();
    bool isReadonly() const { return m_readonly; }
    void setReadonly(bool readonly);
    bool isSlave() const { return m_slave; }
    void setSlave(bool slave);
    bool isProtectedFile() const { return m_protectedFile; }
    Mode mode() const { return m_mode; }
    void setMode(Mode mode);
    bool modeChangedSinceSave() const { return m_modeChangedSinceSave; }
    bool isGeometryModified() const { return m_geometryModified; }
    void setGeometryModified(bool modified);
    bool isLockedBySimulationData() const;
    const QByteArray &dataSimulation() const { return m_dataMA; }
    void clearSimulationData();
    bool isUndoRedoRunning() const { return m_undoRedoRunning; }

    // Elements
    Stator *stator() const { return m_stator; }
    Rotor *rotor() const { return m_rotor; }
    QVector<Airgap *> airgaps() const;
    Airgap *airgap(int id) const;
    WindingObject *winding() const { return m_winding; }
    Mesh *mesh() const { return m_mesh; }
    RatedData *ratedData() const { return m_ratedData; }
    DriveSettings *driveSettings() const { return m_driveSettings; }
    MagnetostaticAnalysis *analysis() const { return m_analysis; }
    UndoStack *undoStack() const { return m_undoStack; }
    ScriptConsole *console() const { return m_console; }
    ConfigObject *config() const { return m_config; }
    JSEngine *engine() const { return m_engine.get(); }
    int activeAirgaps() const { return m_activeAirgaps; }

    QObject *elementByName(const QString &name) const;
    Airgap *airgapOfStatorItem(int id, int side) const;
    Airgap *airgapOfRotorItem(int id, int side) const;

    Machine::Type machineType() const { return m_machineType; }
    void setMachineType(Machine::Type type);
    double height() const;
    SimDomain simDomain() const;
    double simRadialOuterDomain() const;
    // The body flag of the body whose axial range, grown on each side to the
    // middle of its gap, holds the point's ordinate (the axial position);
    // stator bodies are asked first. 0 outside the machine.
    quint32 scopeAt(const QPointF &point) const;

    // Configuration script: the program's own unless this design is given another.
    QString configScriptFile() const { return m_configScriptFile; }
    void setConfigScriptFile(const QString &path);
    void loadConfigScript();
    bool isConfigLoaded() const { return m_configIsLoaded; }
    void updateConfig();
    void configVariableChanged(const QString &name, const QVariant &value);
    Q_INVOKABLE void setConfigVariable(QString propName, QVariant propValue);

    // Undoable changes
    void setPropertyUndoable(QObject *target, const QString &name, const QVariant &value);
    void execCommand(UndoCommand *command);
    void undo();
    void redo();

    // Periodicity and boundary conditions
    static Periodicity computePeriodicity(int slotCount, int polePairs, int layers, const QString &signature);
    Periodicity computePeriodicity() const;
    // What the machine gives when a condition is asked for: never more than computed.
    static Periodicity restrictedPeriodicity(const Periodicity &computed, BoundaryCondition requested);
    // The condition a mode asks for; a manual choice can only weaken what the machine allows.
    static BoundaryCondition wantedBoundaryCondition(BoundaryConditionMode mode, BoundaryCondition stored,
                                                     const Periodicity &computed, int polePairs);
    int periodicity() const { return m_periodicity; }
    double periodicityAngleSpan() const { return 360.0 / m_periodicity; }
    BoundaryConditionMode boundaryConditionMode() const { return m_boundaryConditionMode; }
    void setBoundaryConditionMode(BoundaryConditionMode mode);
    BoundaryCondition boundaryCondition() const { return m_boundaryCondition; }
    void setBoundaryCondition(BoundaryCondition requested);
    void updateBoundaryCondition();

    // Pieces of the whole machine
    PieceList pieces();
    bool hasPieces() const { return m_piecesValid.loadAcquire(); }
    void resetPieces();
    PieceList taskCreatePieces();
    void ensureData();

    // Errors
    QString errorText() const;
    QString geometryErrorText() const;
    QString materialErrorText() const;
    bool hasGeometryErrors() const;
    bool hasMaterialErrors() const;
    void checkElements();

    // Files
    bool load(const QString &path);
    bool save(const QString &path, const QImage *picture);
    bool loadDataSimulationFromFile(const QString &path);
    bool saveDataSimulationToFile(const QString &path) const;
    bool exportToJson(const QString &path);
    // The design as a MAT exchange file, with its meshes built first.
    bool writeExchangeFile(const QString &path);
    bool errorVersionMessage();
    const QImage &previewImage() const { return m_previewImage; }

    // Folders
    static QString scriptsPath();
    static QString configScriptPath();
    static QString materialsPath();

signals:
    void modeChanged(Document::Mode mode);
    void readonlyChanged(bool readonly);
    void dataSimulationChanged();
    void slaveChanged(bool slave);
    void modifiedChanged(bool modified);
    void geomertyModifiedChanged(bool modified);
    void configLoaded(bool loaded);
    void configChanged(QString prop, QVariant value);
    void documentLoaded();
    void machineTypeChanged(Machine::Type type);
    void boundaryConditionModeChanged(Document::BoundaryConditionMode mode);
    void boundaryConditionChanged(Document::BoundaryCondition condition);
    void periodicityChanged(int periodicity);
    void pieceReset();
    void piecesReady();
    void createMotorGeometryStarted();
    void createMotorGeometryFinished();
    void geometryChanged();
    void materialsChanged();

private:
    void setModifiedTrue() { setModified(true); }
    void updateActiveAirgaps();
    BoundaryCondition wantedBoundaryCondition() const;

    void buildConfigHandlers();
    void connectConfigWriteBack();
    void connectItemWriteBack(MotorItem *item, const QString &element, int id);
    void writeBackToConfig(const QString &name, const QVariant &value);
    void reloadConfigScript();
    void applyConfigToElements();
    void pushConfigToScript();
    void configFailure(const QString &text);
    void engineException(const QList<QQmlError> &errors);

    bool loadFailure(const QString &text);
    bool streamFailure(const QDataStream &in, const QString &path);
    bool readProtectedForm(QDataStream &in, const QString &path);
    bool readDocumentForm(QDataStream &in, const QString &path);
    void writeDocumentForm(QDataStream &out) const;

    QObject *statorObject() const;
    QObject *rotorObject() const;
    QObject *airgapObject() const;
    QObject *windingObject() const;
    QObject *meshObject() const;

    QString m_filePath;
    std::unique_ptr<JSEngine> m_engine;
    ScriptConsole *m_console = nullptr;
    bool m_showMessageBoxes = false;
    bool m_started = false;
    ConfigObject *m_config = nullptr;
    FileWatcher *m_fileWatcher = nullptr;
    QString m_configScriptFile;
    bool m_configIsLoaded = false;
    bool m_updatingConfig = false;
    QHash<QString, std::function<bool(const QVariant &)>> m_handlers;
    QAtomicInteger<bool> m_modified = false;
    bool m_preparing = true;
    bool m_ready = false;
    UndoStack *m_undoStack = nullptr;
    bool m_undoRedoRunning = false;
    Mode m_mode = GeometryMotor;
    bool m_modeChangedSinceSave = false;
    bool m_readonly = false;
    bool m_slave = false;
    bool m_protectedFile = false;
    QImage m_previewImage;
    QByteArray m_dataMA;
    Machine::Type m_machineType = Machine::SR;
    Rotor *m_rotor = nullptr;
    Stator *m_stator = nullptr;
    int m_activeAirgaps = 1;
    QVector<Airgap *> m_airgaps;
    WindingObject *m_winding = nullptr;
    Mesh *m_mesh = nullptr;
    RatedData *m_ratedData = nullptr;
    DriveSettings *m_driveSettings = nullptr;
    MagnetostaticAnalysis *m_analysis = nullptr;
    BoundaryConditionMode m_boundaryConditionMode = Automatic;
    BoundaryCondition m_boundaryCondition = None;
    int m_periodicity = 1;
    bool m_geometryModified = false;
    PieceList m_pieces;
    QAtomicInteger<bool> m_piecesValid = false;
    // Counts the changes, so that a build overtaken by one is not kept.
    QAtomicInt m_piecesGeneration = 0;
    std::mutex m_piecesMutex;
};

Q_DECLARE_METATYPE(Document *)

// The suffixes of document files: the plain design and the protected form.
QString zvaSuffix();
QString zvapSuffix();
