#pragma once

#include <QColor>
#include <QFlags>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QVector>

class QDataStream;

// The plain value types of the winding and the enumerations that the rest of the
// program shares with it. Names are readable at run time through the meta-object.
namespace Winding {
Q_NAMESPACE

enum Type : int {
    Planar = 1,
    Toroidal = 2,
};
Q_ENUM_NS(Type)

enum LayersOrientation : int {
    UpperLower = 1,
    LeftRight = 2,
};
Q_ENUM_NS(LayersOrientation)

enum Circuit : int {
    Star = 1,
    Delta = 2,
};
Q_ENUM_NS(Circuit)

// How the layouts of several stator faces are joined: "s" in series, "p" in parallel.
enum Connection : int {
    UnknownConnection = -1,
    Connection_1s2 = 0,
    Connection_1p2 = 1,
    Connection_1s2s3 = 2,
    Connection_1p2p3 = 3,
    Connection_1s2s3s4 = 4,
    Connection_1p2p3p4 = 5,
    Connection_1s2_p_3s4 = 6,
    Connection_1s3_p_2s4 = 7,
    Connection_1s4_p_2s3 = 8,
};
Q_ENUM_NS(Connection)

enum WireSizeMethod : int {
    AWG = 1,
    SWG = 2,
    FillFactor = 3,
    WireDiameter = 4,
};
Q_ENUM_NS(WireSizeMethod)

enum Phase {
    A = 0,
    B = 1,
    C = 2,
    Count = 3,
};
Q_ENUM_NS(Phase)

enum ModeLayout : int {
    Automatic = 0,
    Manual = 1,
};
Q_ENUM_NS(ModeLayout)

enum Scope {
    Empty = 0,
    Layout1 = 1,
    Layout2 = 2,
    Layout3 = 4,
    Layout4 = 8,
    LayoutAny = 15,
    PhaseA = 16,
    PhaseB = 32,
    PhaseC = 64,
    PhaseAny = 112,
};
Q_DECLARE_FLAGS(Scopes, Scope)
Q_FLAG_NS(Scopes)

// One coil. Slots and layers count from 0 here and from 1 wherever a user sees
// them; parallel paths count from 1 everywhere.
struct Coil
{
    Q_GADGET
public:
    enum Direction {
        Incoming = -1,
        Outcoming = 1,
        Unknown = 0,
    };
    Q_ENUM(Direction)

    enum Orientation {
        CW = -1,
        CCW = 1,
        Zero = 0,
    };
    Q_ENUM(Orientation)

    // The value that stands for no coil.
    static Coil none();

    bool operator==(const Coil &other) const;
    bool operator!=(const Coil &other) const { return !(*this == other); }
    // Same slots and layers on both sides; the parallel path may differ.
    bool samePlace(const Coil &other) const;

    // Text form for logs.
    QString toString() const;

    int slotFrom = 0;
    int slotTo = 0;
    int parallelPath = 1;
    int layerFrom = 0;
    int layerTo = 0;
    // Worked out from the layout, never stored in a file.
    Orientation orientation = Zero;
};

// The coils of one phase in the order of the layout; a copy duplicates the coils.
class CoilList : public QList<Coil>
{
public:
    using QList<Coil>::QList;
};

// Three coil lists, indexed by Phase.
class Layout : public QVector<CoilList>
{
public:
    Layout()
        : QVector<CoilList>(Count)
    {
    }
};

// The coil selected in the user interface.
struct CurrentCoil
{
    bool operator==(const CurrentCoil &other) const;
    bool operator!=(const CurrentCoil &other) const { return !(*this == other); }

    Phase phase = Count;
    int layout = -1;
    Coil coil = Coil::none();
};

// Text tables: a text that is not known leaves the given default.
QString toString(Type type);
Type fromString(const QString &text, Type defaultValue);
QString numberLayersString(int numberLayers);
int numberLayersFromString(const QString &text, int defaultValue);
QString toString(LayersOrientation orientation);
LayersOrientation fromString(const QString &text, LayersOrientation defaultValue);
QString toString(Circuit circuit);
Circuit fromString(const QString &text, Circuit defaultValue);
QString toString(WireSizeMethod method);
WireSizeMethod fromString(const QString &text, WireSizeMethod defaultValue);
QString toString(ModeLayout mode);
ModeLayout fromString(const QString &text, ModeLayout defaultValue);
QString toString(Phase phase);
Phase fromString(const QString &text, Phase defaultValue);
QString toString(Coil::Orientation orientation);
Coil::Orientation fromString(const QString &text, Coil::Orientation defaultValue);
QString toString(Connection connection);
Connection fromString(const QString &text, Connection defaultValue);

// The connection texts that make sense for the given number of layouts.
QString normalizeConnection(const QString &text, int countLayouts);

// Texts of coil lists and layouts, so that the undo list can show them.
QString toString(const CoilList &coils);
QString toString(const Layout &layout);

// A coil is stored as five 32-bit ints: slotFrom, slotTo, parallelPath, layerFrom,
// layerTo. Its orientation isn't stored: it is worked out again from the layout.
QDataStream &operator<<(QDataStream &out, const Coil &coil);
QDataStream &operator>>(QDataStream &in, Coil &coil);
// A coil list takes Qt's list form: its count of coils, then the coils. A layout is
// stored as its count of lists, then the lists; one read always has a list per phase.
// Reading checks each count against the bytes left in the stream.
QDataStream &operator>>(QDataStream &in, CoilList &coils);
QDataStream &operator<<(QDataStream &out, const Layout &layout);
QDataStream &operator>>(QDataStream &in, Layout &layout);

QColor phaseColor(Phase phase, bool light);
QColor phaseSlotColor(Phase phase, bool light);
QColor phaseTextColor(Phase phase);

} // namespace Winding

Q_DECLARE_OPERATORS_FOR_FLAGS(Winding::Scopes)
Q_DECLARE_METATYPE(Winding::Coil)
Q_DECLARE_METATYPE(Winding::CoilList)
Q_DECLARE_METATYPE(Winding::Layout)
Q_DECLARE_METATYPE(Winding::CurrentCoil)

// Makes the winding's value types and enumerations known to QVariant by name, with
// their stream forms and texts, so that files and the undo history can carry them.
void registerWindingTypes();
