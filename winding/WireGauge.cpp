#include "winding/WireGauge.h"

#include <algorithm>

namespace Winding {

const QVector<WireGauge> &awgTable()
{
    static const QVector<WireGauge> table{
        {"4/0 AWG", 11.684}, {"3/0 AWG", 10.405}, {"2/0 AWG", 9.266}, {"1/0 AWG", 8.251}, {"1 AWG", 7.348},
        {"2 AWG", 6.544},    {"3 AWG", 5.827},    {"4 AWG", 5.189},   {"5 AWG", 4.621},   {"6 AWG", 4.115},
        {"7 AWG", 3.665},    {"8 AWG", 3.264},    {"9 AWG", 2.906},   {"10 AWG", 2.588},  {"11 AWG", 2.305},
        {"12 AWG", 2.053},   {"13 AWG", 1.828},   {"14 AWG", 1.628},  {"15 AWG", 1.45},   {"16 AWG", 1.291},
        {"17 AWG", 1.15},    {"18 AWG", 1.024},   {"19 AWG", 0.912},  {"20 AWG", 0.812},  {"21 AWG", 0.723},
        {"22 AWG", 0.644},   {"23 AWG", 0.573},   {"24 AWG", 0.511},  {"25 AWG", 0.455},  {"26 AWG", 0.405},
        {"27 AWG", 0.361},   {"28 AWG", 0.321},   {"29 AWG", 0.286},  {"30 AWG", 0.254},  {"31 AWG", 0.227},
        {"32 AWG", 0.202},   {"33 AWG", 0.18},    {"34 AWG", 0.16},   {"35 AWG", 0.143},  {"36 AWG", 0.127},
        {"37 AWG", 0.113},   {"38 AWG", 0.101},   {"39 AWG", 0.0897}, {"40 AWG", 0.0799},
    };
    return table;
}

const QVector<WireGauge> &swgTable()
{
    static const QVector<WireGauge> table{
        {"7/0 SWG", 12.7},    {"6/0 SWG", 11.786},  {"5/0 SWG", 10.973},  {"4/0 SWG", 10.16},   {"3/0 SWG", 9.449},
        {"2/0 SWG", 8.839},   {"1/0 SWG", 8.23},    {"1 SWG", 7.62},      {"2 SWG", 7.01},      {"3 SWG", 6.401},
        {"4 SWG", 5.893},     {"5 SWG", 5.385},     {"6 SWG", 4.877},     {"7 SWG", 4.47},      {"8 SWG", 4.064},
        {"9 SWG", 3.658},     {"10 SWG", 3.251},    {"11 SWG", 2.946},    {"12 SWG", 2.642},    {"13 SWG", 2.337},
        {"14 SWG", 2.032},    {"15 SWG", 1.829},    {"16 SWG", 1.626},    {"17 SWG", 1.422},    {"18 SWG", 1.219},
        {"19 SWG", 1.016},    {"20 SWG", 0.914},    {"21 SWG", 0.813},    {"22 SWG", 0.711},    {"23 SWG", 0.61},
        {"24 SWG", 0.559},    {"25 SWG", 0.508},    {"26 SWG", 0.4572},   {"27 SWG", 0.4166},   {"28 SWG", 0.3759},
        {"29 SWG", 0.3454},   {"30 SWG", 0.315},    {"31 SWG", 0.2946},   {"32 SWG", 0.2743},   {"33 SWG", 0.254},
        {"34 SWG", 0.2337},   {"35 SWG", 0.2134},   {"36 SWG", 0.193},    {"37 SWG", 0.1727},   {"38 SWG", 0.1524},
        {"39 SWG", 0.1321},   {"40 SWG", 0.1219},   {"41 SWG", 0.1118},   {"42 SWG", 0.1016},   {"43 SWG", 0.0914},
        {"44 SWG", 0.0813},   {"45 SWG", 0.0711},   {"46 SWG", 0.061},    {"47 SWG", 0.0508},   {"48 SWG", 0.0406},
        {"49 SWG", 0.0305},   {"50 SWG", 0.0254},
    };
    return table;
}

int gaugeIndex(const QVector<WireGauge> &table, const QString &name)
{
    const auto row = std::find_if(table.cbegin(), table.cend(),
                                  [&name](const WireGauge &gauge) { return gauge.name == name; });
    return row == table.cend() ? -1 : int(row - table.cbegin());
}

double gaugeDiameter(const QString &name)
{
    for (const QVector<WireGauge> *table : {&awgTable(), &swgTable()}) {
        const int index = gaugeIndex(*table, name);
        if (index >= 0)
            return table->at(index).diameter;
    }
    return 0.0;
}

} // namespace Winding
