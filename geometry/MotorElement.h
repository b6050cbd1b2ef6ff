#pragma once

#include <QJSValue>
#include <QList>
#include <QMetaMethod>
#include <mutex>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>
#include <QVector>
#include <memory>

#include "base/ScriptConsole.h"
#include "document/CoreMotorElement.h"
#include "geometry/MotorItem.h"

class FileWatcher;
class JSEngine;
class QQmlError;
class ScriptDescribeList;
class ScriptObject;

// The part that stator and rotor share: a geometry script of their own, described
// by a catalogue entry, whose messages go to the element's console; the diameters,
// the iron and the three bodies that the script draws.
//
// Stator and rotor declare most of the shared properties themselves, to keep them in
// their place among their own ones, and with them their notify signals: moc takes a
// notify signal from a base class only when it carries no value.
class MotorElement : public CoreMotorElement
{
    Q_OBJECT
    Q_PROPERTY(double outerDiameter READ outerDiameter WRITE setOuterDiameter NOTIFY outerDiameterChanged)
    Q_PROPERTY(double outerRadius READ outerRadius WRITE setOuterRadius NOTIFY outerDiameterChanged)
    Q_PROPERTY(double innerDiameter READ innerDiameter WRITE setInnerDiameter NOTIFY innerDiameterChanged)
    Q_PROPERTY(double innerRadius READ innerRadius WRITE setInnerRadius NOTIFY innerDiameterChanged)

public:
    double outerDiameter() const { return m_outerDiameter; }
    void setOuterDiameter(double diameter);
    double outerRadius() const { return m_outerDiameter / 2.0; }
    void setOuterRadius(double radius) { setOuterDiameter(radius * 2.0); }
    double innerDiameter() const { return m_innerDiameter; }
    void setInnerDiameter(double diameter);
    double innerRadius() const { return m_innerDiameter / 2.0; }
    void setInnerRadius(double radius) { setInnerDiameter(radius * 2.0); }
    MiddleType typeMiddleItem() const { return m_typeMiddleItem; }
    void setTypeMiddleItem(MiddleType type);

    // The first countItems() bodies belong to the machine.
    int countItems() const { return m_countItems; }
    QVector<MotorItem *> activeItems() const { return m_items.mid(0, m_countItems); }
    void setCountItems(int count);

    ~MotorElement() override;

    // The script's file name within the element's scripts folder.
    QString script() const { return m_script; }
    // A name that the catalogue knows in another case takes the catalogue's; the
    // script is read at once and followed on disk.
    void setScript(const QString &script);
    // The catalogue's name of the script.
    QString nameScript() const;
    // The file of a script name in the element's scripts folder.
    QString scriptPath(const QString &script) const;
    bool isScriptLoaded() const { return m_scriptLoaded; }
    JSEngine *engine() const { return m_engine.get(); }
    // Held by every call into the script, the editor panel's too; an element holds it
    // also while it takes in a result.
    std::recursive_mutex &engineMutex() const { return m_engineMutex; }

    // Evaluates the script in a new engine and binds its variables; false, with the
    // message on the console, when it fails or lacks what an element needs. The
    // element stands as one without a script until a read succeeds.
    bool readScript(const QString &path);
    // What the global object of that name returns from getGeometry(id), in the terms
    // of GeometryScriptResult; an empty map when the script fails.
    QVariantMap geometry(const QString &objectName, int id) const;
    // The variables that the script's panel edits, with their values.
    QVariantMap scriptEditedProperties();
    ScriptObject *scriptObject() const { return m_scriptObject; }
    QVariantMap scriptProperties() const;
    void setScriptProperties(const QVariantMap &properties);

    QString ironMaterial() const { return m_ironMaterial; }
    void setIronMaterial(const QString &material);
    double ironStacking() const { return m_ironStacking; }
    void setIronStacking(double stacking);

    QVariantMap properties() const;
    void setProperties(const QVariantMap &map);

    void clearCashPieces();

    ScriptConsole *console() const { return m_console; }
    // The one-line text of the last failure of the script; empty after a good call.
    QString scriptErrorText() const;

    GeometryErrors geometryErrors() const { return m_geometryErrors; }
    // Derives the flags from the diameters and the bodies' pitches, built if need be;
    // announced when they change.
    void updateGeometryErrors();
    MaterialErrors materialErrors() const { return m_materialErrors; }
    QString geometryErrorText() const;

    // The body of that id, 1 to 3; for any other value a spare body that is no part of the machine.
    Q_INVOKABLE MotorItem *item(const QJSValue &jsv) const;
    Q_INVOKABLE bool isLower(MotorItem::ID id) const;
    Q_INVOKABLE bool isMiddle(MotorItem::ID id) const;
    Q_INVOKABLE bool isUpper(MotorItem::ID id) const;
    // The index counts the air gaps of the machine, 1 to 4; it is the body on that gap.
    Q_INVOKABLE double itemAngularDisplacement(int index) const;
    Q_INVOKABLE void setItemAngularDisplacement(int index, double angle);

signals:
    void innerDiameterChanged(double diameter);
    void outerDiameterChanged(double diameter);
    void scriptPropertyChanged(QString propName, QVariant value);
    void scriptLoaded();
    void endturnShapeGeneratedChanged(bool generated);
    void materialsChanged();
    void pieceReset();
    void piecesReady();
    void createGeometryStarted();
    void createGeometryFinished();
    void geometryChanged();
    void geometryErrorsChanged(GeometryErrors errors);
    void materialErrorsChanged(MaterialErrors errors);

protected:
    // The name is the element's object name and that of its script object.
    MotorElement(ScriptConsole::Scope scope, const QString &name, int countItems, Document *document);

    // Three bodies, ID1 to ID3, whatever the machine.
    template <typename Item, typename Element>
    void createItems(Element *element)
    {
        for (int id = MotorItem::ID1; id <= MotorItem::ID3; ++id)
            m_items.append(new Item(element, MotorItem::ID(id)));
        m_spareItem = new Item(element, MotorItem::Empty);
        m_spareItem->blockSignals(true);
        activateItems();
    }

    // The bodies as the element's own item class.
    template <typename Item>
    QVector<Item *> itemsAs() const
    {
        QVector<Item *> items;
        for (MotorItem *item : m_items)
            items.append(static_cast<Item *>(item));
        return items;
    }

    // The property map's entries for the number of slots or poles and the like.
    virtual QVariantMap ownProperties() const = 0;
    virtual void setOwnProperties(const QVariantMap &map) = 0;
    // The body on an air gap of the machine, 1 to 4; Empty where there is none.
    virtual MotorItem::ID itemIdOnAirgap(int index) const = 0;
    virtual const ScriptDescribeList &catalogue() const = 0;
    // What is built on this element's pieces besides its own bodies.
    virtual void clearDependentPieces() {}

    // A material or its temperature: stored and announced through the notify signal
    // of the property, then the materials as a whole. The pieces stay.
    void setMaterialValue(const char *property, QString &field, const QString &value);
    void setMaterialValue(const char *property, double &field, double value);

private:
    // Diameters in the wrong order are an error that needs no build.
    void tellDiametersOutOfOrder();

    // Emits the notify signal of one of the properties that stator and rotor declare.
    template <typename Value>
    void emitNotify(const char *property, const Value &value)
    {
        notifySignal(property).invoke(this, Qt::DirectConnection, Q_ARG(Value, value));
    }
    // statorChanged or rotorChanged: the notify signal of the property map.
    void emitElementChanged();
    QMetaMethod notifySignal(const char *property) const;
    void variableChanged(const QString &name, const QVariant &value);

    void resetEngine();
    bool evaluateScript(const QString &path);
    // Reads the script that the element names, if it lies in its catalogue's folder.
    void readNamedScript();
    bool readScriptFile(const QString &path);
    void trackScriptFile(const QString &path);
    void engineException(const QList<QQmlError> &errors);
    // Logged behind "Error:" and shown on the console.
    void scriptFailure(const QString &message) const;
    void scriptFileChanged(const QString &path);
    // The script's values of a property map, if they belong to the script now loaded.
    void setScriptValues(const QVariantMap &map);

    // Bodies beyond the count don't belong to the machine: they stay silent.
    void activateItems();
    MotorItem *itemOfAirgap(int index) const;
    // One map for each active body.
    QVariantList itemsProperties() const;
    void setItemsProperties(const QVariantList &list);

    // Air gaps are counted 1 to 4; any other index is logged as a bad one.
    static bool isAirgapIndex(int index);
    // The key name of the type in the property map; an unknown name gives Yoke.
    static QString middleTypeKey(MiddleType type);
    static MiddleType middleTypeFromKey(const QString &key);

    // The engine is not reentrant: one call into the script at a time.
    mutable std::recursive_mutex m_engineMutex;
    std::unique_ptr<JSEngine> m_engine;
    ScriptConsole *m_console;
    FileWatcher *m_watcher;
    // The main script and all it included or required.
    QStringList m_scriptFiles;
    bool m_scriptLoaded = false;
    mutable QString m_lastError;
    GeometryErrors m_geometryErrors;
    MaterialErrors m_materialErrors;
    double m_innerDiameter = 100.0;
    double m_outerDiameter = 300.0;
    MiddleType m_typeMiddleItem = Yoke;
    QString m_script;
    ScriptObject *m_scriptObject;
    int m_countItems;
    QVector<MotorItem *> m_items;
    // What scripts get for an id that names no body: it belongs to no machine.
    MotorItem *m_spareItem = nullptr;
    double m_ironStacking = 0.9;
    QString m_ironMaterial;
};
