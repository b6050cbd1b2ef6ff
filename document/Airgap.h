#pragma once

#include <QDataStream>
#include <QObject>

#include "document/CoreMotorElement.h"

class Document;

// An axial gap between a stator and a rotor body. Gap ID1 is the master of both
// values: whatever is set on any gap goes to ID1 first and from there to all four.
class Airgap : public QObject
{
    Q_OBJECT
    Q_PROPERTY(ID id READ id CONSTANT)
    Q_PROPERTY(double thickness READ thickness WRITE setThickness NOTIFY thicknessChanged)
    Q_PROPERTY(int numberLayers READ numberLayers WRITE setNumberLayers NOTIFY numberLayersChanged)

public:
    enum ID {
        Empty = 0,
        ID1 = 1,
        ID2 = 2,
        ID3 = 3,
        ID4 = 4,
    };
    Q_ENUM(ID)

    Airgap(ID id, Document *document);

    ID id() const { return m_id; }
    double thickness() const { return m_thickness; }
    void setThickness(const double &thickness);
    int numberLayers() const { return m_numberLayers; }
    void setNumberLayers(const int &numberLayers);

    Q_INVOKABLE double posBottom() const;
    Q_INVOKABLE double posTop() const;
    Q_INVOKABLE double posMiddle() const;

    // The gap's block of a document file; false for a block of a newer program.
    void save(QDataStream &out) const;
    bool load(QDataStream &in);

    GeometryErrors geometryErrors() const { return m_errors; }
    void checkErrors();
    QString elementErrors() const;

    // Mesh layers are odd, from 3 to 9, so that a row lies in the middle of the gap.
    static int correctedNumberLayers(int numberLayers);

signals:
    void thicknessChanged(double thickness);
    void numberLayersChanged(int numberLayers);
    void airgapChanged();
    void geometryErrorsChanged(GeometryErrors errors);

private:
    Airgap *master() const;
    GeometryErrors computeErrors() const;

    ID m_id;
    double m_thickness = 3.0;
    int m_numberLayers = 3;
    Document *m_document;
    GeometryErrors m_errors;
};
