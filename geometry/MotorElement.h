#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

#include "document/CoreMotorElement.h"
#include "geometry/DesignChange.h"
#include "QmlScripting/ScriptConsole.h"

// The part that stator and rotor share: a geometry script of their own, described
// by a catalogue entry, whose messages go to the element's console.
class MotorElement : public CoreMotorElement
{
    Q_OBJECT
public:
    enum MiddleType {
        UnknownType = 0,
        Yokeless = 1,
        Yoke = 2,
    };
    Q_ENUM(MiddleType)

    MotorElement(ScriptConsole::Scope scope, Document *document, QObject *parent = nullptr);

    ScriptConsole *console() const { return m_console; }
    // The one-line text of the last failure of the script; empty after a good call.
    QString scriptErrorText() const { return m_lastError; }

    GeometryErrors geometryErrors() const { return m_geometryErrors; }
    MaterialErrors materialErrors() const { return m_materialErrors; }
    QString geometryErrorText() const;

protected:
    // Air gaps are counted 1 to 4; any other index is logged as a bad one.
    static bool isAirgapIndex(int index);

    // The key name of the type in the property map; an unknown name gives Yoke.
    static QString middleTypeKey(MiddleType type);
    static MiddleType middleTypeFromKey(const QString &key);

    // One map for each active body in the property map.
    template <typename Item>
    static QVariantList itemsProperties(const QVector<Item *> &activeItems)
    {
        QVariantList list;
        for (const Item *item : activeItems) {
            list << QVariantMap{{QStringLiteral("height"), roundLength(item->height())},
                                {QStringLiteral("angularDisplacement"), item->angularDisplacement()}};
        }
        return list;
    }

    // A list that doesn't match the active bodies one to one is passed over.
    template <typename Item>
    static void setItemsProperties(const QVector<Item *> &activeItems, const QVariantList &list)
    {
        if (list.size() != activeItems.size())
            return;
        for (int i = 0; i < list.size(); ++i) {
            const QVariantMap map = list.at(i).toMap();
            activeItems.at(i)->setHeight(map.value(QStringLiteral("height"), 50.0).toDouble());
            activeItems.at(i)->setAngularDisplacement(map.value(QStringLiteral("angularDisplacement")).toDouble());
        }
    }

    // Bodies beyond the count don't belong to the machine: they stay silent.
    template <typename Item>
    static void activateItems(const QVector<Item *> &items, int count)
    {
        for (int i = 0; i < items.size(); ++i) {
            items.at(i)->blockSignals(i >= count);
            items.at(i)->clearCashPieces();
        }
    }

private:
    ScriptConsole *m_console;
    QString m_lastError;
    GeometryErrors m_geometryErrors;
    MaterialErrors m_materialErrors;
};
