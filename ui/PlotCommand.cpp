#include "ui/PlotCommand.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("PlotCommand", text);
}

// The text between "name(" and its ")", with the rest after it; false when absent.
bool callArguments(const QString &text, const QString &name, QString *arguments, QString *rest)
{
    const QRegularExpression call(QStringLiteral("^\\s*%1\\s*\\(([^)]*)\\)\\s*;?").arg(name));
    const QRegularExpressionMatch match = call.match(text);
    if (!match.hasMatch())
        return false;
    *arguments = match.captured(1);
    *rest = text.mid(match.capturedEnd());
    return true;
}

QStringList splitArguments(const QString &arguments)
{
    QStringList parts;
    for (const QString &part : arguments.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString trimmed = part.trimmed();
        if (!trimmed.isEmpty())
            parts.append(trimmed);
    }
    return parts;
}

} // namespace

PlotCommand PlotCommand::parse(const QString &text)
{
    PlotCommand command;
    QString arguments;
    QString rest;
    if (!callArguments(text, QStringLiteral("plot"), &arguments, &rest)) {
        command.m_error = tr("Only plot(x,y,...) of variable names can be drawn: %1").arg(text.trimmed());
        return command;
    }
    const QStringList names = splitArguments(arguments);
    const QRegularExpression identifier(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    for (const QString &name : names) {
        if (!identifier.match(name).hasMatch()) {
            command.m_error = tr("Not a variable name in plot(): %1").arg(name);
            return command;
        }
    }
    if (names.isEmpty() || names.size() % 2 != 0) {
        command.m_error = tr("plot() needs pairs of x and y variables: %1").arg(arguments);
        return command;
    }
    for (int i = 0; i < names.size(); i += 2)
        command.m_series.append({names.at(i), names.at(i + 1), names.at(i + 1)});

    QString legendArguments;
    QString end;
    if (callArguments(rest, QStringLiteral("legend"), &legendArguments, &end)) {
        const QRegularExpression quoted(QStringLiteral("'([^']*)'"));
        auto it = quoted.globalMatch(legendArguments);
        for (Series &series : command.m_series) {
            if (!it.hasNext())
                break;
            series.legend = it.next().captured(1);
        }
        rest = end;
    }
    if (!rest.trimmed().isEmpty())
        command.m_error = tr("Can't draw what follows the plot: %1").arg(rest.trimmed());
    return command;
}

AxisLimits AxisLimits::parse(const QString &text)
{
    QString bare = text.trimmed();
    if (bare.startsWith(QLatin1Char('[')) && bare.endsWith(QLatin1Char(']')))
        bare = bare.mid(1, bare.size() - 2);
    const QStringList parts = bare.split(QRegularExpression(QStringLiteral("[\\s,]+")), Qt::SkipEmptyParts);
    AxisLimits limits;
    if (parts.size() != 2)
        return limits;
    bool lowerOk = false;
    bool upperOk = false;
    limits.lower = parts.at(0).toDouble(&lowerOk);
    limits.upper = parts.at(1).toDouble(&upperOk);
    limits.valid = lowerOk && upperOk && limits.lower < limits.upper;
    return limits;
}
