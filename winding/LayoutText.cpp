#include "winding/LayoutText.h"

#include <QStringList>

namespace Winding {

namespace {

QStringList columnHeaders(bool withParallelPaths)
{
    QStringList headers{QStringLiteral(" Coil;"),     QStringLiteral(" Slot from;"), QStringLiteral(" Layer from;"),
                        QStringLiteral(" Slot to;"),  QStringLiteral(" Layer to;"),  QStringLiteral(" Dir;")};
    if (withParallelPaths)
        headers << QStringLiteral(" Parallel path;");
    return headers;
}

// Each column is as wide as its header: the number of the coil to the left, the rest to the right.
QString coilLine(const QStringList &headers, int number, const Coil &coil, bool withParallelPaths)
{
    QStringList values{QString::number(coil.slotFrom + 1), QString::number(coil.layerFrom + 1),
                       QString::number(coil.slotTo + 1), QString::number(coil.layerTo + 1),
                       toString(coil.orientation)};
    if (withParallelPaths)
        values << QString::number(coil.parallelPath);
    QString line = QStringLiteral(" #%1").arg(number).leftJustified(headers.first().size());
    for (int i = 0; i < values.size(); ++i)
        line += QStringLiteral("%1 ").arg(values.at(i)).rightJustified(headers.at(i + 1).size());
    return line;
}

} // namespace

QString layoutsToText(const QVector<Layout> &layouts, int countLayouts, int parallelPaths)
{
    const bool withParallelPaths = parallelPaths != 1;
    const QStringList headers = columnHeaders(withParallelPaths);
    QStringList blocks;
    for (int index = 0; index < qMin(countLayouts, layouts.size()); ++index) {
        QStringList lines{QStringLiteral("Layout #%1").arg(index + 1), headers.join(QString())};
        for (int phase = A; phase < Count; ++phase) {
            lines << QStringLiteral("Phase %1").arg(toString(Phase(phase)));
            const CoilList &coils = layouts.at(index).at(phase);
            for (int i = 0; i < coils.size(); ++i)
                lines << coilLine(headers, i + 1, coils.at(i), withParallelPaths);
        }
        blocks << lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
    }
    return blocks.join(QLatin1Char('\n'));
}

QVector<SlotMark> slotMarks(const Layout &layout, int numberSlots, int numberLayers)
{
    QVector<SlotMark> marks(qMax(0, numberLayers * numberSlots));
    auto place = [&](int slot, int layer, Phase phase, QChar sign, int parallelPath) {
        if (slot < 0 || slot >= numberSlots || layer < 0 || layer >= numberLayers)
            return;
        SlotMark &mark = marks[numberLayers * slot + layer];
        mark.slot = slot;
        mark.layer = layer;
        mark.phase = phase;
        mark.text = QStringLiteral("%1%2%3").arg(sign).arg(toString(phase)).arg(parallelPath);
        mark.color = phaseSlotColor(phase, false);
    };
    for (int phase = A; phase < Count; ++phase) {
        for (const Coil &coil : layout.at(phase)) {
            place(coil.slotFrom, coil.layerFrom, Phase(phase), QLatin1Char('+'), coil.parallelPath);
            place(coil.slotTo, coil.layerTo, Phase(phase), QLatin1Char('-'), coil.parallelPath);
        }
    }
    return marks;
}

} // namespace Winding
