#pragma once

#include <QVariantMap>

#include "document/Machine.h"
#include "geometry/MotorElement.h"
#include "geometry/SimDomain.h"
#include "geometry/StatorItem.h"

class ScriptObject;

// The stator: its dimensions, materials and up to three bodies, all drawn by one
// geometry script.
class Stator : public MotorElement
{
    Q_OBJECT
    Q_PROPERTY(double outerDiameter READ outerDiameter WRITE setOuterDiameter NOTIFY outerDiameterChanged)
    Q_PROPERTY(double outerRadius READ outerRadius WRITE setOuterRadius NOTIFY outerDiameterChanged)
    Q_PROPERTY(double innerDiameter READ innerDiameter WRITE setInnerDiameter NOTIFY innerDiameterChanged)
    Q_PROPERTY(double innerRadius READ innerRadius WRITE setInnerRadius NOTIFY innerDiameterChanged)
    Q_PROPERTY(int numberSlots READ numberSlots WRITE setNumberSlots NOTIFY numberSlotsChanged)
    Q_PROPERTY(double slotAngleSpan READ slotAngleSpan NOTIFY numberSlotsChanged)
    Q_PROPERTY(MotorElement::MiddleType typeMiddleItem READ typeMiddleItem WRITE setTypeMiddleItem NOTIFY typeMiddleItemChanged)
    Q_PROPERTY(int countItems READ countItems)
    Q_PROPERTY(QVector<StatorItem *> items READ items CONSTANT)
    Q_PROPERTY(QString script READ script NOTIFY scriptChanged)
    Q_PROPERTY(QVariantMap scriptProperties READ scriptProperties WRITE setScriptProperties NOTIFY statorChanged)
    Q_PROPERTY(QString ironMaterial READ ironMaterial WRITE setIronMaterial NOTIFY ironMaterialChanged)
    Q_PROPERTY(double ironStacking READ ironStacking WRITE setIronStacking NOTIFY ironStackingChanged)
    Q_PROPERTY(QString windingMaterial READ windingMaterial WRITE setWindingMaterial NOTIFY windingMaterialChanged)
    Q_PROPERTY(double windingTemperature READ windingTemperature WRITE setWindingTemperature NOTIFY windingTemperatureChanged)
    Q_PROPERTY(SimDomain simDomain READ simDomain)
    Q_PROPERTY(double simRadialOuterDomain READ simRadialOuterDomain)
    Q_PROPERTY(QVariantMap properties READ properties WRITE setProperties NOTIFY statorChanged)

public:
    explicit Stator(Document *document);

    double outerDiameter() const { return m_outerDiameter; }
    void setOuterDiameter(double diameter);
    double outerRadius() const { return m_outerDiameter / 2.0; }
    void setOuterRadius(double radius) { setOuterDiameter(radius * 2.0); }
    double innerDiameter() const { return m_innerDiameter; }
    void setInnerDiameter(double diameter);
    double innerRadius() const { return m_innerDiameter / 2.0; }
    void setInnerRadius(double radius) { setInnerDiameter(radius * 2.0); }
    int numberSlots() const { return m_numberSlots; }
    void setNumberSlots(int numberSlots);
    // Degrees of one slot pitch.
    double slotAngleSpan() const { return 360.0 / m_numberSlots; }
    MiddleType typeMiddleItem() const { return m_typeMiddleItem; }
    void setTypeMiddleItem(MiddleType type);

    // The first countItems() bodies belong to the machine.
    static int countItemsFor(Machine::Type machine);
    int countItems() const { return m_countItems; }
    void setCountItems(int count);
    QVector<StatorItem *> items() const { return m_items; }

    // The script's file name within the stator scripts' folder.
    QString script() const { return m_script; }
    ScriptObject *scriptObject() const { return m_scriptObject; }
    QVariantMap scriptProperties() const;
    void setScriptProperties(const QVariantMap &properties);

    QString ironMaterial() const { return m_ironMaterial; }
    void setIronMaterial(const QString &material);
    double ironStacking() const { return m_ironStacking; }
    void setIronStacking(double stacking);
    QString windingMaterial() const { return m_windingMaterial; }
    void setWindingMaterial(const QString &material);
    double windingTemperature() const { return m_windingTemperature; }
    void setWindingTemperature(double temperature);

    // Until the script has told them, defaults that follow the diameters.
    const SimDomain &simDomain() const;
    double simRadialOuterDomain() const;

    QVariantMap properties() const;
    void setProperties(const QVariantMap &map);

    void clearCashPieces();

    QString materialErrorText() const;

    Q_INVOKABLE bool isLower(StatorItem::ID id) const;
    Q_INVOKABLE bool isMiddle(StatorItem::ID id) const;
    Q_INVOKABLE bool isUpper(StatorItem::ID id) const;
    // The index counts the air gaps of the machine, 1 to 4; it is the body on that gap.
    Q_INVOKABLE double itemAngularDisplacement(int index) const;
    Q_INVOKABLE void setItemAngularDisplacement(int index, double angle);

signals:
    void numberSlotsChanged(uint numberSlots);
    void innerDiameterChanged(double diameter);
    void outerDiameterChanged(double diameter);
    void typeMiddleItemChanged(MotorElement::MiddleType type);
    void scriptChanged(QString script);
    void scriptPropertyChanged(QString propName, QVariant value);
    void scriptLoaded();
    void ironMaterialChanged(QString material);
    void ironStackingChanged(double stacking);
    void windingMaterialChanged(QString material);
    void windingTemperatureChanged(double temperature);
    void endturnShapeGeneratedChanged(bool generated);
    void materialsChanged();
    void statorChanged();
    void pieceReset();
    void piecesReady();
    void createGeometryStarted();
    void createGeometryFinished();
    void geometryChanged();
    void geometryErrorsChanged(GeometryErrors errors);
    void materialErrorsChanged(MaterialErrors errors);

private:
    void variableChanged(const QString &name, const QVariant &value);
    StatorItem *itemOfAirgap(int index) const;

    double m_innerDiameter = 100.0;
    double m_outerDiameter = 300.0;
    int m_numberSlots = 6;
    MiddleType m_typeMiddleItem = Yoke;
    QString m_script;
    ScriptObject *m_scriptObject;
    int m_countItems;
    QVector<StatorItem *> m_items;
    double m_ironStacking = 0.9;
    QString m_ironMaterial;
    double m_windingTemperature = 20.0;
    QString m_windingMaterial;
    // Written by the first script result that tells them.
    bool m_simDomainUnknown = true;
    mutable SimDomain m_simDomain;
    double m_simRadialOuterDomain = 0.0;
};
