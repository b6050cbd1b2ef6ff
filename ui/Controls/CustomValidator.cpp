#include "ui/Controls/CustomValidator.h"

#include <QRegularExpression>
#include <limits>

CustomValidator::CustomValidator(double bottom, double top, int decimals, QObject *parent)
    : QDoubleValidator(bottom, top, decimals, parent)
    , m_tolerance(std::numeric_limits<double>::epsilon())
{
    QLocale c = QLocale::c();
    c.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
    setLocale(c);
}

QString CustomValidator::withLocalePoint(const QString &input) const
{
    const QChar point = locale().decimalPoint();
    QString copy = input;
    copy.replace(QLatin1Char('.'), point).replace(QLatin1Char(','), point);
    return copy;
}

QValidator::State CustomValidator::validate(QString &input, int &pos) const
{
    QString copy = withLocalePoint(input);
    bool ok = false;
    const double number = locale().toDouble(copy, &ok);
    if (ok && number >= bottom() - m_tolerance && number <= top() + m_tolerance)
        return Acceptable;
    return QDoubleValidator::validate(copy, pos);
}

void CustomValidator::fixup(QString &input) const
{
    bool ok = false;
    const double number = input.toDouble(&ok);
    if (!ok)
        return;
    // The shortest form keeps a bound exact, however many digits it has.
    if (number > top() + m_tolerance)
        input = QStringLiteral("%1").arg(top(), 0, 'f', QLocale::FloatingPointShortest);
    else if (number < bottom() - m_tolerance)
        input = QStringLiteral("%1").arg(bottom(), 0, 'f', QLocale::FloatingPointShortest);
    if (input.contains(QLatin1Char('.'))) {
        input.remove(QRegularExpression(QStringLiteral("0+$")));
        input.remove(QRegularExpression(QStringLiteral("\\.$")));
    }
}
