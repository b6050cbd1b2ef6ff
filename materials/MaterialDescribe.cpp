#include "materials/MaterialDescribe.h"

#include <QLocale>

double stringToDouble(const QString &text)
{
    const QLocale c = QLocale::c();
    QString number = text.trimmed();
    number.replace(QLatin1Char(','), c.decimalPoint());
    bool ok = false;
    const double value = c.toDouble(number, &ok);
    return ok ? value : 0.0;
}
