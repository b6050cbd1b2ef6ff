#pragma once

#include <QDataStream>

#include "base/Machine.h"
#include "geometry/MotorElement.h"
#include "geometry/PoleArrangement.h"
#include "geometry/RotorItem.h"
#include "geometry/SimDomain.h"
#include "materials/Magnetization.h"

// The rotor: its dimensions, materials and up to three bodies, all drawn by one
// geometry script.
class Rotor : public MotorElement
{
    Q_OBJECT
    Q_PROPERTY(int numberPolePairs READ numberPolePairs WRITE setNumberPolePairs NOTIFY numberPolePairsChanged)
    Q_PROPERTY(double poleAngleSpan READ poleAngleSpan NOTIFY numberPolePairsChanged)
    Q_PROPERTY(PoleArrangement::Type poleArrangement READ poleArrangement WRITE setPoleArrangement NOTIFY poleArrangementChanged)
    Q_PROPERTY(MotorElement::MiddleType typeMiddleItem READ typeMiddleItem WRITE setTypeMiddleItem NOTIFY typeMiddleItemChanged)
    Q_PROPERTY(int countItems READ countItems)
    Q_PROPERTY(QVector<RotorItem *> items READ items CONSTANT)
    Q_PROPERTY(QString script READ script WRITE setScript NOTIFY scriptChanged)
    Q_PROPERTY(QVariantMap scriptProperties READ scriptProperties WRITE setScriptProperties NOTIFY rotorChanged)
    Q_PROPERTY(QString nameScript READ nameScript NOTIFY scriptChanged)
    Q_PROPERTY(QString ironMaterial READ ironMaterial WRITE setIronMaterial NOTIFY ironMaterialChanged)
    Q_PROPERTY(double ironStacking READ ironStacking WRITE setIronStacking NOTIFY ironStackingChanged)
    Q_PROPERTY(QString magnetMaterial READ magnetMaterial WRITE setMagnetMaterial NOTIFY magnetMaterialChanged)
    Q_PROPERTY(double magnetTemperature READ magnetTemperature WRITE setMagnetTemperature NOTIFY magnetTemperatureChanged)
    Q_PROPERTY(int magnetSegmentsRadialDirection READ magnetSegmentsRadialDirection WRITE setMagnetSegmentsRadialDirection NOTIFY magnetSegmentsRadialDirectionChanged)
    Q_PROPERTY(QString conductorMaterial READ conductorMaterial WRITE setConductorMaterial NOTIFY conductorMaterialChanged)
    Q_PROPERTY(double conductorTemperature READ conductorTemperature WRITE setConductorTemperature NOTIFY conductorTemperatureChanged)
    Q_PROPERTY(SimDomain simDomain READ simDomain)
    Q_PROPERTY(double simRadialOuterDomain READ simRadialOuterDomain)
    Q_PROPERTY(QVariantMap properties READ properties WRITE setProperties NOTIFY rotorChanged)

public:
    explicit Rotor(Document *document);

    // The block of a document file; false for a block of a newer program.
    void save(QDataStream &out) const;
    bool load(QDataStream &in);

    int numberPolePairs() const { return m_numberPolePairs; }
    // Anything below 1 gives 1.
    void setNumberPolePairs(int numberPolePairs);
    // Degrees of one pole pitch.
    double poleAngleSpan() const { return 180.0 / m_numberPolePairs; }
    PoleArrangement::Type poleArrangement() const { return m_poleArrangement; }
    void setPoleArrangement(PoleArrangement::Type arrangement);

    // How many rotor bodies a machine of that type has.
    static int countItemsFor(Machine::Type machine);
    QVector<RotorItem *> items() const { return itemsAs<RotorItem>(); }

    QString magnetMaterial() const { return m_magnetMaterial; }
    void setMagnetMaterial(const QString &material);
    double magnetTemperature() const { return m_magnetTemperature; }
    void setMagnetTemperature(double temperature);
    const QVector<Magnetization> &magnetizations() const { return m_magnetizations; }
    void setMagnetizations(const QVector<Magnetization> &magnetizations);
    int magnetSegmentsRadialDirection() const { return m_magnetSegmentsRadialDirection; }
    void setMagnetSegmentsRadialDirection(int segments);
    QString conductorMaterial() const { return m_conductorMaterial; }
    void setConductorMaterial(const QString &material);
    double conductorTemperature() const { return m_conductorTemperature; }
    void setConductorTemperature(double temperature);
    QString materialErrorText() const;

    // Those of the stator: one domain serves the whole machine.
    // The script's drawing of one pole pitch of body id; it tells the rotor its 3D
    // coefficients and magnet segments as well.
    QVariantMap geometry(int id);
    using MotorElement::geometry;
    QVariant coefs3D() const { return m_coefs3D; }

    SimDomain simDomain() const;
    double simRadialOuterDomain() const;

signals:
    void numberPolePairsChanged(int numberPolePairs);
    void typeMiddleItemChanged(MotorElement::MiddleType type);
    void poleArrangementChanged(PoleArrangement::Type arrangement);
    void poleMirrorUDChanged();
    void poleRotatePolePitchChanged();
    void scriptChanged(QString script);
    void ironMaterialChanged(QString material);
    void ironStackingChanged(double stacking);
    void magnetTemperatureChanged(double temperature);
    void magnetMaterialChanged(QString material);
    void magnetSegmentsRadialDirectionChanged(int segments);
    void conductorTemperatureChanged(double temperature);
    void conductorMaterialChanged(QString material);
    void polePiecesChanged();
    void rotorChanged();

protected:
    const ScriptDescribeList &catalogue() const override;
    QVariantMap ownProperties() const override;
    void setOwnProperties(const QVariantMap &map) override;
    MotorItem::ID itemIdOnAirgap(int index) const override;

private:
    int m_numberPolePairs = 2;
    PoleArrangement::Type m_poleArrangement = PoleArrangement::Unknown;
    double m_magnetTemperature = 20.0;
    QString m_magnetMaterial;
    double m_conductorTemperature = 20.0;
    QString m_conductorMaterial;
    int m_magnetSegmentsRadialDirection = 1;
    QVariant m_coefs3D;
    QVector<Magnetization> m_magnetizations;
};
