#pragma once

#include <QList>
#include <QString>
#include <QVariantMap>
#include <QVector>

#include <mutex>

#include "document/CoreMotorElement.h"
#include "meshing/CDT.h"
#include "meshing/GeometryData.h"

class Mesh3D;
class QDataStream;
class ScriptConsole;
struct SliceMachine;
struct MeshBody;
struct MeshSettings;
struct RadialFrame;

namespace CGAL {
class Failure_exception;
}

// The two-dimensional meshes of a document and the settings they are made with.
// A change of a setting marks the meshes for rebuilding; the old ones stand until
// the next build replaces them.
class Mesh : public CoreMotorElement
{
    Q_OBJECT
    Q_PROPERTY(bool autoSizeBound READ autoSizeBound WRITE setAutoSizeBound NOTIFY autoSizeBoundChanged)
    Q_PROPERTY(double sizeBound READ sizeBound WRITE setSizeBound NOTIFY sizeBoundChanged)
    Q_PROPERTY(double airgapQuality READ airgapQuality WRITE setAirgapQuality NOTIFY airgapQualityChanged)
    Q_PROPERTY(int numberSlices READ numberSlices WRITE setNumberSlices NOTIFY numberSlicesChanged)
    Q_PROPERTY(bool horizontalSymmetry READ horizontalSymmetry WRITE setHorizontalSymmetry NOTIFY horizontalSymmetryChanged)
    Q_PROPERTY(double boundCylinderRadius READ boundCylinderRadius WRITE setBoundCylinderRadius NOTIFY boundCylinderRadiusChanged)
    Q_PROPERTY(double boundCylinderAxialExtension READ boundCylinderAxialExtension WRITE setBoundCylinderAxialExtension NOTIFY boundCylinderAxialExtensionChanged)
    Q_PROPERTY(bool meshModified READ isMeshModified WRITE setMeshModified NOTIFY meshModifiedChanged)
    Q_PROPERTY(QVariantMap properties READ properties WRITE setProperties NOTIFY meshChanged)

public:
    explicit Mesh(Document *document);

    ScriptConsole *console() const { return m_console; }
    // The volume mesh of one period, for showing.
    Mesh3D *mesh3D() const { return m_mesh3D; }

    bool autoSizeBound() const { return m_autoSizeBound; }
    void setAutoSizeBound(bool automatic);
    // Greatest triangle side, mm.
    double sizeBound() const { return m_sizeBound; }
    void setSizeBound(double size);
    // Lets an automatic size bound follow the diameters.
    void adjustSizeBound();
    // Row segment length in the air gaps, in units of the layer height.
    double airgapQuality() const { return m_airgapQuality; }
    void setAirgapQuality(double quality);
    static QString airgapQualityName(double quality);
    static double airgapQualityValue(const QString &name);
    int numberSlices() const { return m_numberSlices; }
    void setNumberSlices(int numberSlices);
    bool horizontalSymmetry() const { return m_horizontalSymmetry; }
    void setHorizontalSymmetry(bool symmetry);
    double boundCylinderRadius() const { return m_boundCylinderRadius; }
    void setBoundCylinderRadius(double radius);
    double boundCylinderAxialExtension() const { return m_boundCylinderAxialExtension; }
    void setBoundCylinderAxialExtension(double extension);

    bool isGeneratingGeometry() const { return m_generatingGeometry; }
    bool isMeshing() const { return m_meshing; }
    // The meshes differ from what was saved.
    bool isMeshModified() const { return m_meshModified; }
    void setMeshModified(bool modified);
    // The meshes must be rebuilt.
    bool isMeshInvalid() const { return m_meshInvalid; }
    void setMeshInvalid(bool invalid);
    // Drops what was made from the document's pieces.
    void clearGeometry();

    // The radius of each slice, from the inner radius of the active domain out.
    QList<double> sliceRadii() const;
    // The radial width of each slice, the axial length of its flat problem.
    QList<double> sliceWidths() const;
    // The chord limit of the sections: a third of the air gap, at most the size bound.
    double maxSectionSize() const;
    // The regions of every slice, cut in parallel; kept until the geometry is cleared.
    void createGeometrySlices();
    // One entry a slice, empty until made.
    const QVector<GeometryData> &geometrySlices() const { return m_geometrySlices; }
    // The regions of the plane through the axis, empty until made.
    const GeometryData &geometryRadial() const { return m_geometryRadial; }
    // Where the radial model ends.
    double radialOuterRadius() const;
    // The triangles of every slice over the period and of the plane through the
    // axis, when the meshes are invalid; returns when all are done.
    void createMeshSlices();
    // One entry a slice, empty until made.
    const QVector<CDT> &meshSlices() const { return m_meshSlices; }
    // The plane through the axis, empty until made.
    const CDT &meshRadial() const { return m_meshRadial; }
    // For each active stator body and each slice, the vertices of its cell inside
    // the conductors; made with the meshes when the end turns are scripted.
    const QVector<QVector<QList<PointF>>> &windingPoints() const { return m_windingPoints; }
    // Drops the triangulations.
    void clearMeshes();

    MeshErrors meshErrors() const { return m_meshErrors; }
    void onError(QString text, const CGAL::Failure_exception *failure = nullptr);
    QString elementErrors() const;

    QVariantMap properties() const;
    void setProperties(const QVariantMap &map);

    // The mesh's block of a document file: the settings, not the meshes. load
    // returns false, having changed nothing, for a version newer than this program.
    void save(QDataStream &out) const;
    bool load(QDataStream &in);

signals:
    void autoSizeBoundChanged();
    void sizeBoundChanged();
    void airgapQualityChanged();
    void numberSlicesChanged();
    void horizontalSymmetryChanged();
    void boundCylinderRadiusChanged();
    void boundCylinderAxialExtensionChanged();
    void meshModifiedChanged(bool modified);
    void meshChanged();
    void meshErrorsChanged(MeshErrors errors);
    void generateGeomertyStart();
    void generateGeomertyFinished();
    void generateMeshStart();
    void generateMeshFinished();

private:
    template <typename T, typename Signal>
    void assign(T &field, T value, Signal signal);
    template <typename Signal>
    void announce(Signal signal);
    double automaticSizeBound() const;
    // False, with the reason reported, when the machine cannot be cut into slices.
    bool checkMachine();
    // False, with the reason reported, when the radial model would end within the active part.
    bool checkRadialModel();
    // The machine as the slices see it.
    SliceMachine sliceMachine();
    // The bodies that are meshed, each with its mirror image in a symmetric machine.
    QVector<MeshBody> meshBodies();
    MeshSettings meshSettings() const;
    RadialFrame radialFrame() const;
    void createWindingPoints(const MeshSettings &settings);

    bool m_autoSizeBound = true;
    double m_sizeBound = 10.0;
    // The manual value while the size bound is automatic.
    double m_storedSizeBound = 10.0;
    int m_numberSlices = 3;
    double m_airgapQuality = 1.5;
    // Carried from file to file unread.
    bool m_reserved = true;
    bool m_horizontalSymmetry = true;
    double m_boundCylinderRadius = 10.0;
    double m_boundCylinderAxialExtension = 10.0;
    bool m_generatingGeometry = false;
    bool m_meshing = false;
    bool m_meshModified = false;
    bool m_meshInvalid = true;
    MeshErrors m_meshErrors;
    QVector<GeometryData> m_geometrySlices;
    GeometryData m_geometryRadial;
    QVector<CDT> m_meshSlices;
    CDT m_meshRadial;
    QVector<QVector<QList<PointF>>> m_windingPoints;
    // Steps of several slices may fail at once.
    std::mutex m_errorMutex;
    ScriptConsole *m_console;
    Mesh3D *m_mesh3D;
};
