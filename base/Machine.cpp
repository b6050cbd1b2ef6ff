#include "base/Machine.h"

#include <QDebug>

namespace Machine {

QString typeText(Type type)
{
    switch (type) {
    case SR:
        return QStringLiteral("SR");
    case SRS:
        return QStringLiteral("SRS");
    case SRSRS:
        return QStringLiteral("SRSRS");
    case RSR:
        return QStringLiteral("RSR");
    case RSRSR:
        return QStringLiteral("RSRSR");
    case UnknownType:
        break;
    }
    return QStringLiteral("UnknowType");
}

ApplicabilityFlag applicabilityOf(Type type)
{
    switch (type) {
    case SR:
        return ApplicabilitySR;
    case SRS:
        return ApplicabilitySRS;
    case SRSRS:
        return ApplicabilitySRSRS;
    case RSR:
        return ApplicabilityRSR;
    case RSRSR:
        return ApplicabilityRSRSR;
    case UnknownType:
        break;
    }
    return UnknownApplicability;
}

ApplicabilityFlag applicabilityFromString(const QString &text)
{
    static const struct {
        const char *text;
        ApplicabilityFlag flag;
    } texts[] = {
        {"SR", ApplicabilitySR},       {"RS", ApplicabilitySR},   {"SRS", ApplicabilitySRS},
        {"SRSRS", ApplicabilitySRSRS}, {"RSR", ApplicabilityRSR}, {"RSRSR", ApplicabilityRSRSR},
        {"anyType", AnyType},
    };
    for (const auto &entry : texts) {
        if (text.compare(QLatin1String(entry.text), Qt::CaseInsensitive) == 0)
            return entry.flag;
    }
    qCritical() << "Error: Unknown applicability" << text;
    return UnknownApplicability;
}

} // namespace Machine
