#pragma once

#include <QDataStream>
#include <atomic>

#include "base/Machine.h"
#include "geometry/MotorElement.h"
#include "geometry/SimDomain.h"
#include "geometry/StatorItem.h"

// The stator: its dimensions, materials and up to three bodies, all drawn by one
// geometry script.
class Stator : public MotorElement
{
    Q_OBJECT
    Q_PROPERTY(int numberSlots READ numberSlots WRITE setNumberSlots NOTIFY numberSlotsChanged)
    Q_PROPERTY(double slotAngleSpan READ slotAngleSpan NOTIFY numberSlotsChanged)
    Q_PROPERTY(MotorElement::MiddleType typeMiddleItem READ typeMiddleItem WRITE setTypeMiddleItem NOTIFY typeMiddleItemChanged)
    Q_PROPERTY(int countItems READ countItems)
    Q_PROPERTY(QVector<StatorItem *> items READ items CONSTANT)
    Q_PROPERTY(QString script READ script WRITE setScript NOTIFY scriptChanged)
    Q_PROPERTY(QVariantMap scriptProperties READ scriptProperties WRITE setScriptProperties NOTIFY statorChanged)
    Q_PROPERTY(QString nameScript READ nameScript NOTIFY scriptChanged)
    Q_PROPERTY(QString ironMaterial READ ironMaterial WRITE setIronMaterial NOTIFY ironMaterialChanged)
    Q_PROPERTY(double ironStacking READ ironStacking WRITE setIronStacking NOTIFY ironStackingChanged)
    Q_PROPERTY(QString windingMaterial READ windingMaterial WRITE setWindingMaterial NOTIFY windingMaterialChanged)
    Q_PROPERTY(double windingTemperature READ windingTemperature WRITE setWindingTemperature NOTIFY windingTemperatureChanged)
    Q_PROPERTY(SimDomain simDomain READ simDomain)
    Q_PROPERTY(double simRadialOuterDomain READ simRadialOuterDomain)
    Q_PROPERTY(QVariantMap properties READ properties WRITE setProperties NOTIFY statorChanged)

public:
    explicit Stator(Document *document);

    // The block of a document file; false for a block of a newer program.
    void save(QDataStream &out) const;
    bool load(QDataStream &in);

    int numberSlots() const { return m_numberSlots; }
    void setNumberSlots(int numberSlots);
    // Degrees of one slot pitch.
    double slotAngleSpan() const { return 360.0 / m_numberSlots; }

    // How many stator bodies a machine of that type has.
    static int countItemsFor(Machine::Type machine);
    QVector<StatorItem *> items() const { return itemsAs<StatorItem>(); }

    QString windingMaterial() const { return m_windingMaterial; }
    void setWindingMaterial(const QString &material);
    double windingTemperature() const { return m_windingTemperature; }
    void setWindingTemperature(double temperature);
    QString materialErrorText() const;

    // The script's drawing of one slot pitch of body id; its simulation domain becomes the stator's.
    QVariantMap geometry(int id);
    using MotorElement::geometry;

    // Until the script has told them, defaults that follow the diameters.
    SimDomain simDomain() const;
    double simRadialOuterDomain() const;

signals:
    void numberSlotsChanged(uint numberSlots);
    void typeMiddleItemChanged(MotorElement::MiddleType type);
    void scriptChanged(QString script);
    void ironMaterialChanged(QString material);
    void ironStackingChanged(double stacking);
    void windingMaterialChanged(QString material);
    void windingTemperatureChanged(double temperature);
    void statorChanged();

protected:
    const ScriptDescribeList &catalogue() const override;
    QVariantMap ownProperties() const override;
    void setOwnProperties(const QVariantMap &map) override;
    MotorItem::ID itemIdOnAirgap(int index) const override;
    // The rotor stands on the stator, and the winding's end turns on its slots.
    void clearDependentPieces() override;

private:
    // The domain must be the same for every body: a change from one call to the next is warned of.
    void takeSimDomain(const QVariantMap &result);
    void askScriptForDomain() const;

    int m_numberSlots = 6;
    double m_windingTemperature = 20.0;
    QString m_windingMaterial;
    // Written by the first script result that tells them, under the engine's mutex;
    // the flag is also read without it, to know whether the script must be asked.
    std::atomic<bool> m_simDomainUnknown{true};
    SimDomain m_simDomain;
    double m_simRadialOuterDomain = 0.0;
};
