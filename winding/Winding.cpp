#include "winding/Winding.h"

#include "base/StreamChecks.h"

#include <QDataStream>
#include <QDebug>
#include <QMetaEnum>
#include <QStringList>

namespace Winding {

namespace {

template <typename Enum>
struct TextEntry
{
    Enum value;
    const char *text;
};

template <typename Enum, size_t N>
QString textOf(const TextEntry<Enum> (&table)[N], Enum value, const char *otherwise)
{
    for (const auto &entry : table) {
        if (entry.value == value)
            return QString::fromLatin1(entry.text);
    }
    return QString::fromLatin1(otherwise);
}

template <typename Enum, size_t N>
Enum valueOf(const TextEntry<Enum> (&table)[N], const QString &text, Enum defaultValue)
{
    for (const auto &entry : table) {
        if (text == QLatin1String(entry.text))
            return entry.value;
    }
    return defaultValue;
}

const TextEntry<int> numberLayersTexts[] = {
    {1, "Single layer"},
    {2, "Double layer"},
};

const TextEntry<LayersOrientation> orientationTexts[] = {
    {UpperLower, "Upper / Lower"},
    {LeftRight, "Left / Right"},
};

const TextEntry<Circuit> circuitTexts[] = {
    {Star, "StarConnection"},
    {Delta, "DeltaConnection"},
};

const TextEntry<WireSizeMethod> methodTexts[] = {
    {AWG, "AWG"},
    {SWG, "SWG"},
    {FillFactor, "Fill factor"},
    {WireDiameter, "Wire diameter"},
};

const TextEntry<ModeLayout> modeTexts[] = {
    {Automatic, "Automatic"},
    {Manual, "Manual"},
};

const TextEntry<Phase> phaseTexts[] = {
    {A, "A"},
    {B, "B"},
    {C, "C"},
};

const TextEntry<Coil::Orientation> coilOrientationTexts[] = {
    {Coil::CCW, "CCW"},
    {Coil::CW, "CW"},
    {Coil::Zero, "Zero"},
};

const TextEntry<Connection> connectionTexts[] = {
    {Connection_1s2, "1-2"},
    {Connection_1p2, "1||2"},
    {Connection_1s2s3, "1-2-3"},
    {Connection_1p2p3, "1||2||3"},
    {Connection_1s2s3s4, "1-2-3-4"},
    {Connection_1p2p3p4, "1||2||3||4"},
    {Connection_1s2_p_3s4, "(1-2)||(3-4)"},
    {Connection_1s3_p_2s4, "(1-3)||(2-4)"},
    {Connection_1s4_p_2s3, "(1-4)||(2-3)"},
};

} // namespace

Coil Coil::none()
{
    Coil coil;
    coil.slotFrom = -1;
    coil.slotTo = -1;
    coil.layerFrom = -1;
    coil.layerTo = -1;
    return coil;
}

bool Coil::operator==(const Coil &other) const
{
    return samePlace(other) && parallelPath == other.parallelPath && orientation == other.orientation;
}

bool Coil::samePlace(const Coil &other) const
{
    return slotFrom == other.slotFrom && slotTo == other.slotTo && layerFrom == other.layerFrom
           && layerTo == other.layerTo;
}

QString Coil::toString() const
{
    return QStringLiteral("%6 S%1.L%2-S%3.L%4 %5")
        .arg(slotFrom)
        .arg(layerFrom)
        .arg(slotTo)
        .arg(layerTo)
        .arg(Winding::toString(orientation))
        .arg(parallelPath);
}

bool CurrentCoil::operator==(const CurrentCoil &other) const
{
    return phase == other.phase && layout == other.layout && coil == other.coil;
}

QString toString(Type type)
{
    return QString::fromLatin1(QMetaEnum::fromType<Type>().valueToKey(type));
}

Type fromString(const QString &text, Type defaultValue)
{
    bool ok = false;
    const int value = QMetaEnum::fromType<Type>().keyToValue(text.toLatin1().constData(), &ok);
    return ok ? Type(value) : defaultValue;
}

QString numberLayersString(int numberLayers)
{
    if (numberLayers != 1 && numberLayers != 2)
        qCritical() << "Error: number layers is zero";
    return textOf(numberLayersTexts, numberLayers, "Zero layer");
}

int numberLayersFromString(const QString &text, int defaultValue)
{
    return valueOf(numberLayersTexts, text, defaultValue);
}

QString toString(LayersOrientation orientation)
{
    return textOf(orientationTexts, orientation, "");
}

LayersOrientation fromString(const QString &text, LayersOrientation defaultValue)
{
    return valueOf(orientationTexts, text, defaultValue);
}

QString toString(Circuit circuit)
{
    return textOf(circuitTexts, circuit, "UnknownCircuit");
}

Circuit fromString(const QString &text, Circuit defaultValue)
{
    return valueOf(circuitTexts, text, defaultValue);
}

QString toString(WireSizeMethod method)
{
    return textOf(methodTexts, method, "");
}

WireSizeMethod fromString(const QString &text, WireSizeMethod defaultValue)
{
    return valueOf(methodTexts, text, defaultValue);
}

QString toString(ModeLayout mode)
{
    return textOf(modeTexts, mode, "UnknownModeLayout");
}

ModeLayout fromString(const QString &text, ModeLayout defaultValue)
{
    return valueOf(modeTexts, text, defaultValue);
}

QString toString(Phase phase)
{
    return textOf(phaseTexts, phase, "");
}

Phase fromString(const QString &text, Phase defaultValue)
{
    return valueOf(phaseTexts, text, defaultValue);
}

QString toString(Coil::Orientation orientation)
{
    return textOf(coilOrientationTexts, orientation, "Zero");
}

Coil::Orientation fromString(const QString &text, Coil::Orientation defaultValue)
{
    return valueOf(coilOrientationTexts, text, defaultValue);
}

QString toString(Connection connection)
{
    return textOf(connectionTexts, connection, "UnknownConnection");
}

Connection fromString(const QString &text, Connection defaultValue)
{
    return valueOf(connectionTexts, text, defaultValue);
}

QString normalizeConnection(const QString &text, int countLayouts)
{
    switch (countLayouts) {
    case 1:
        return QString();
    case 2:
        return text == toString(Connection_1p2) ? text : toString(Connection_1s2);
    case 3:
        return text == toString(Connection_1p2p3) ? text : toString(Connection_1s2s3);
    case 4: {
        const Connection kept[] = {Connection_1p2p3p4, Connection_1s2_p_3s4, Connection_1s3_p_2s4,
                                   Connection_1s4_p_2s3};
        for (Connection connection : kept) {
            if (text == toString(connection))
                return text;
        }
        return toString(Connection_1s2s3s4);
    }
    default:
        return QStringLiteral("?");
    }
}

QString toString(const CoilList &coils)
{
    QStringList texts;
    for (const Coil &coil : coils)
        texts << coil.toString();
    return texts.join(QLatin1String(", "));
}

QString toString(const Layout &layout)
{
    QStringList texts;
    for (int phase = A; phase < Count; ++phase)
        texts << toString(Phase(phase)) + QLatin1String(": ") + toString(layout.value(phase));
    return texts.join(QLatin1String("; "));
}

QDataStream &operator<<(QDataStream &out, const Coil &coil)
{
    return out << coil.slotFrom << coil.slotTo << coil.parallelPath << coil.layerFrom << coil.layerTo;
}

QDataStream &operator>>(QDataStream &in, Coil &coil)
{
    coil = Coil();
    return in >> coil.slotFrom >> coil.slotTo >> coil.parallelPath >> coil.layerFrom >> coil.layerTo;
}

QDataStream &operator<<(QDataStream &out, const Layout &layout)
{
    return out << static_cast<const QVector<CoilList> &>(layout);
}

QDataStream &operator>>(QDataStream &in, CoilList &coils)
{
    // Counts are checked against the bytes left before anything is made of them: a
    // damaged count must not ask for gigabytes.
    const int coilBytes = 5 * 4;
    coils.clear();
    quint32 count = 0;
    in >> count;
    if (in.status() != QDataStream::Ok || !StreamChecks::countFits(in, count, coilBytes))
        return in;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        Coil coil;
        in >> coil;
        coils.append(coil);
    }
    if (in.status() != QDataStream::Ok)
        coils.clear();
    return in;
}

QDataStream &operator>>(QDataStream &in, Layout &layout)
{
    layout.clear();
    quint32 lists = 0;
    in >> lists;
    // A list takes at least its count.
    if (in.status() == QDataStream::Ok && StreamChecks::countFits(in, lists, 4)) {
        for (quint32 i = 0; i < lists && in.status() == QDataStream::Ok; ++i) {
            CoilList list;
            in >> list;
            layout.append(list);
        }
    }
    if (in.status() != QDataStream::Ok)
        layout.clear();
    layout.resize(Count);
    return in;
}

QColor phaseColor(Phase phase, bool light)
{
    const int strong = 255;
    const int weak = light ? 220 : 20;
    switch (phase) {
    case A:
        return QColor(strong, weak, weak);
    case B:
        return QColor(weak, strong, weak);
    case C:
        return QColor(weak, weak, strong);
    default:
        return QColor();
    }
}

QColor phaseSlotColor(Phase phase, bool light)
{
    const QColor color = phaseColor(phase, light);
    return QColor::fromHsvF(color.hsvHueF(), light ? 0.3 : 0.5, color.valueF());
}

QColor phaseTextColor(Phase phase)
{
    return QColor::fromHsvF(phaseColor(phase, false).hsvHueF(), 0.7, 0.5);
}

} // namespace Winding

void registerWindingTypes()
{
    static const bool registered = [] {
        // Enumerations travel as their 32-bit value.
        qRegisterMetaTypeStreamOperators<Winding::ModeLayout>("Winding::ModeLayout");
        qRegisterMetaTypeStreamOperators<Winding::Type>("Winding::Type");
        qRegisterMetaTypeStreamOperators<Winding::LayersOrientation>("Winding::LayersOrientation");
        qRegisterMetaTypeStreamOperators<Winding::WireSizeMethod>("Winding::WireSizeMethod");
        qRegisterMetaTypeStreamOperators<Winding::Circuit>("Winding::Circuit");
        qRegisterMetaTypeStreamOperators<Winding::Connection>("Winding::Connection");

        qRegisterMetaTypeStreamOperators<Winding::Coil>("Winding::Coil");
        qRegisterMetaTypeStreamOperators<Winding::CoilList>("Winding::CoilList");
        qRegisterMetaTypeStreamOperators<Winding::Layout>("Winding::Layout");
        qRegisterMetaTypeStreamOperators<QVector<bool>>("QVector<bool>");

        QMetaType::registerConverter<Winding::Coil, QString>(&Winding::Coil::toString);
        QMetaType::registerConverter<Winding::CoilList, QString>(
            [](const Winding::CoilList &coils) { return Winding::toString(coils); });
        return QMetaType::registerConverter<Winding::Layout, QString>(
            [](const Winding::Layout &layout) { return Winding::toString(layout); });
    }();
    Q_UNUSED(registered)
}
