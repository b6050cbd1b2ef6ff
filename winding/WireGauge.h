#pragma once

#include <QString>
#include <QVector>

namespace Winding {

// One row of a wire gauge table: its name, which is the key, and the bare diameter in mm.
struct WireGauge
{
    QString name;
    double diameter = 0.0;
};

// The American and the British standard wire gauges, thickest first.
const QVector<WireGauge> &awgTable();
const QVector<WireGauge> &swgTable();

// The row of a name in a table, or -1 for a name the table lacks.
int gaugeIndex(const QVector<WireGauge> &table, const QString &name);
// The diameter of a gauge of either table, 0 for an unknown name.
double gaugeDiameter(const QString &name);

} // namespace Winding
