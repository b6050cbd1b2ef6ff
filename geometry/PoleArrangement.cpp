#include "geometry/PoleArrangement.h"

#include <QHash>

namespace PoleArrangement {

namespace {

const QHash<Type, QString> &texts()
{
    static const QHash<Type, QString> table{
        {NN, QStringLiteral("N-N")},     {NS, QStringLiteral("N-S")},     {NSNS, QStringLiteral("N-S-N-S")},
        {NSSN, QStringLiteral("N-S-S-N")}, {NNSS, QStringLiteral("N-N-S-S")}, {NNNN, QStringLiteral("N-N-N-N")},
    };
    return table;
}

} // namespace

QString text(Type type)
{
    return texts().value(type);
}

Type fromText(const QString &text)
{
    return texts().key(text, Unknown);
}

} // namespace PoleArrangement
