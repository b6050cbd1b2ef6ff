#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <vector>

#include "analysis/MAT_Converter.h"

class Document;
class SliceData;

// A document as the named variables of a MAT exchange file, and the motor
// properties of such a file back into the document.
class MAT_Parcer
{
    Q_DECLARE_TR_FUNCTIONS(MAT_Parcer)
public:
    explicit MAT_Parcer(Document *document);

    bool showMessageBoxes() const { return m_showMessageBoxes; }
    void setShowMessageBoxes(bool show) { m_showMessageBoxes = show; }

    // The full exchange file; the file at the path is replaced only once the new one is complete.
    bool write(const QString &path);

    MatVarPointer geometryToMAT() const;
    MatVarPointer windingToMAT() const;
    MatVarPointer materialsToMAT() const;
    MatVarPointer motorPropertiesToMAT() const;
    MatVarPointer weightToMAT() const;
    MatVarPointer errorToMAT() const;
    MatVarPointer settingsMagnetostaticToMAT() const;
    // cell_Properties, cell_MaterialType, Mesh, RadMesh, from the meshes already built.
    QList<MatVarPointer> meshToMAT() const;

    // A file with motorProps alone.
    bool saveMotorProperties(const QString &path);
    // Applies a file's motorProps as one undoable change; the document is left as
    // it was when the file or any part of it is unfit.
    bool loadMotorProperties(const QString &path);
    // Every variable of a file by its name; empty when the file can't be read.
    QJsonObject convertToJSON(const QString &path) const;

private:
    void showCritical(const QString &text) const;
    mat_t *openForRead(const QString &path) const;
    QVector<quint32> scopesOf(bool stator) const;
    // A negative index stands for the radial model.
    matvar_t *sliceProperties(const SliceData &slice, int sliceIndex) const;
    matvar_t *radialMeshVar(const SliceData &radial) const;
    matvar_t *meshVar(const std::vector<SliceData> &slices) const;
    matvar_t *sliceRows(const SliceData &slice, bool rotor) const;

    Document *m_document;
    bool m_showMessageBoxes = false;
};
