#pragma once

#include <QVariantMap>

#include "document/Machine.h"
#include "geometry/MotorElement.h"
#include "geometry/PoleArrangement.h"
#include "geometry/RotorItem.h"
#include "geometry/SimDomain.h"

class ScriptObject;

// The rotor: its dimensions, materials and up to three bodies, all drawn by one
// geometry script.
class Rotor : public MotorElement
{
    Q_OBJECT
    Q_PROPERTY(double outerDiameter READ outerDiameter WRITE setOuterDiameter NOTIFY outerDiameterChanged)
    Q_PROPERTY(double outerRadius READ outerRadius WRITE setOuterRadius NOTIFY outerDiameterChanged)
    Q_PROPERTY(double innerDiameter READ innerDiameter WRITE setInnerDiameter NOTIFY innerDiameterChanged)
    Q_PROPERTY(double innerRadius READ innerRadius WRITE setInnerRadius NOTIFY innerDiameterChanged)
    Q_PROPERTY(int numberPolePairs READ numberPolePairs WRITE setNumberPolePairs NOTIFY numberPolePairsChanged)
    Q_PROPERTY(double poleAngleSpan READ poleAngleSpan NOTIFY numberPolePairsChanged)
    Q_PROPERTY(PoleArrangement::Type poleArrangement READ poleArrangement WRITE setPoleArrangement NOTIFY poleArrangementChanged)
    Q_PROPERTY(MotorElement::MiddleType typeMiddleItem READ typeMiddleItem WRITE setTypeMiddleItem NOTIFY typeMiddleItemChanged)
    Q_PROPERTY(int countItems READ countItems)
    Q_PROPERTY(QVector<RotorItem *> items READ items CONSTANT)
    Q_PROPERTY(QString script READ script NOTIFY scriptChanged)
    Q_PROPERTY(QVariantMap scriptProperties READ scriptProperties WRITE setScriptProperties NOTIFY rotorChanged)
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

    double outerDiameter() const { return m_outerDiameter; }
    void setOuterDiameter(double diameter);
    double outerRadius() const { return m_outerDiameter / 2.0; }
    void setOuterRadius(double radius) { setOuterDiameter(radius * 2.0); }
    double innerDiameter() const { return m_innerDiameter; }
    void setInnerDiameter(double diameter);
    double innerRadius() const { return m_innerDiameter / 2.0; }
    void setInnerRadius(double radius) { setInnerDiameter(radius * 2.0); }
    int numberPolePairs() const { return m_numberPolePairs; }
    // Anything below 1 gives 1.
    void setNumberPolePairs(int numberPolePairs);
    // Degrees of one pole pitch.
    double poleAngleSpan() const { return 180.0 / m_numberPolePairs; }
    PoleArrangement::Type poleArrangement() const { return m_poleArrangement; }
    void setPoleArrangement(PoleArrangement::Type arrangement);
    MiddleType typeMiddleItem() const { return m_typeMiddleItem; }
    void setTypeMiddleItem(MiddleType type);

    // The first countItems() bodies belong to the machine.
    static int countItemsFor(Machine::Type machine);
    int countItems() const { return m_countItems; }
    void setCountItems(int count);
    QVector<RotorItem *> items() const { return m_items; }

    // The script's file name within the rotor scripts' folder.
    QString script() const { return m_script; }
    ScriptObject *scriptObject() const { return m_scriptObject; }
    QVariantMap scriptProperties() const;
    void setScriptProperties(const QVariantMap &properties);

    QString ironMaterial() const { return m_ironMaterial; }
    void setIronMaterial(const QString &material);
    double ironStacking() const { return m_ironStacking; }
    void setIronStacking(double stacking);
    QString magnetMaterial() const { return m_magnetMaterial; }
    void setMagnetMaterial(const QString &material);
    double magnetTemperature() const { return m_magnetTemperature; }
    void setMagnetTemperature(double temperature);
    int magnetSegmentsRadialDirection() const { return m_magnetSegmentsRadialDirection; }
    void setMagnetSegmentsRadialDirection(int segments);
    QString conductorMaterial() const { return m_conductorMaterial; }
    void setConductorMaterial(const QString &material);
    double conductorTemperature() const { return m_conductorTemperature; }
    void setConductorTemperature(double temperature);

    // Those of the stator: one domain serves the whole machine.
    const SimDomain &simDomain() const;
    double simRadialOuterDomain() const;

    QVariantMap properties() const;
    void setProperties(const QVariantMap &map);

    void clearCashPieces();

    QString materialErrorText() const;

    Q_INVOKABLE bool isLower(RotorItem::ID id) const;
    Q_INVOKABLE bool isMiddle(RotorItem::ID id) const;
    Q_INVOKABLE bool isUpper(RotorItem::ID id) const;
    // The index counts the air gaps of the machine, 1 to 4; it is the body on that gap.
    Q_INVOKABLE double itemAngularDisplacement(int index) const;
    Q_INVOKABLE void setItemAngularDisplacement(int index, double angle);

signals:
    void numberPolePairsChanged(int numberPolePairs);
    void innerDiameterChanged(double diameter);
    void outerDiameterChanged(double diameter);
    void typeMiddleItemChanged(MotorElement::MiddleType type);
    void poleArrangementChanged(PoleArrangement::Type arrangement);
    void poleMirrorUDChanged();
    void poleRotatePolePitchChanged();
    void scriptChanged(QString script);
    void scriptPropertyChanged(QString propName, QVariant value);
    void scriptLoaded();
    void ironMaterialChanged(QString material);
    void ironStackingChanged(double stacking);
    void magnetTemperatureChanged(double temperature);
    void magnetMaterialChanged(QString material);
    void magnetSegmentsRadialDirectionChanged(int segments);
    void conductorTemperatureChanged(double temperature);
    void conductorMaterialChanged(QString material);
    void endturnShapeGeneratedChanged(bool generated);
    void materialsChanged();
    void polePiecesChanged();
    void rotorChanged();
    void pieceReset();
    void piecesReady();
    void createGeometryStarted();
    void createGeometryFinished();
    void geometryChanged();
    void geometryErrorsChanged(GeometryErrors errors);
    void materialErrorsChanged(MaterialErrors errors);

private:
    void variableChanged(const QString &name, const QVariant &value);
    RotorItem *itemOfAirgap(int index) const;

    double m_innerDiameter = 100.0;
    double m_outerDiameter = 300.0;
    int m_numberPolePairs = 2;
    MiddleType m_typeMiddleItem = Yoke;
    PoleArrangement::Type m_poleArrangement = PoleArrangement::Unknown;
    QString m_script;
    ScriptObject *m_scriptObject;
    int m_countItems;
    QVector<RotorItem *> m_items;
    double m_ironStacking = 0.9;
    QString m_ironMaterial;
    double m_magnetTemperature = 20.0;
    QString m_magnetMaterial;
    double m_conductorTemperature = 20.0;
    QString m_conductorMaterial;
    int m_magnetSegmentsRadialDirection = 1;
};
