#include "ui/ConsoleModel.h"

#include <QBrush>
#include <QIcon>
#include <QMetaEnum>
#include <QMetaMethod>
#include <QTime>

namespace {

const int scopeBits[] = {ScriptConsole::Motor,   ScriptConsole::Stator, ScriptConsole::Rotor,
                         ScriptConsole::Winding, ScriptConsole::Mesh,   ScriptConsole::Magnitostatic};

Qt::GlobalColor kindColor(qint32 kind)
{
    switch (kind) {
    case ConsoleContentModel::LogKind:
        return Qt::darkGreen;
    case ConsoleContentModel::InformationKind:
        return Qt::darkBlue;
    case ConsoleContentModel::WarningKind:
        return Qt::darkYellow;
    case ConsoleContentModel::ErrorKind:
        return Qt::darkRed;
    default:
        return Qt::black;
    }
}

QString kindIcon(qint32 kind)
{
    switch (kind) {
    case ConsoleContentModel::LogKind:
        return QStringLiteral(":/bug.png");
    case ConsoleContentModel::InformationKind:
        return QStringLiteral(":/status-info.png");
    case ConsoleContentModel::WarningKind:
        return QStringLiteral(":/status-warn.png");
    case ConsoleContentModel::ErrorKind:
        return QStringLiteral(":/status-error.png");
    default:
        return QStringLiteral(":/empty-16.png");
    }
}

// In the sense of QFlags::testFlag: every bit of the value in the mask, and 0
// only in the mask 0.
bool inMask(int value, int mask)
{
    return value == 0 ? mask == 0 : (mask & value) == value;
}

} // namespace

ConsoleContentModel::ConsoleContentModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

ConsoleContentModel::~ConsoleContentModel()
{
    qDeleteAll(m_rows);
}

void ConsoleContentModel::attach(ScriptConsole *console)
{
    connect(console, &ScriptConsole::signalLog, this, &ConsoleContentModel::log);
    connect(console, &ScriptConsole::signalError, this, &ConsoleContentModel::error);
    connect(console, &ScriptConsole::signalWarn, this, &ConsoleContentModel::warn);
    connect(console, &ScriptConsole::signalInfo, this, &ConsoleContentModel::info);
    connect(console, &ScriptConsole::clear, this,
            [this](ScriptConsole::Scope scope) { clear(ScriptConsole::Scopes(scope)); });
}

int ConsoleContentModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int ConsoleContentModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant ConsoleContentModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return QVariant();
    const Row *row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == 0 ? QVariant(row->text) : QVariant();
    case Qt::DecorationRole:
        return index.column() == 0 ? QVariant(QIcon(kindIcon(row->kind))) : QVariant();
    case Qt::ForegroundRole:
        return index.column() == 0 ? QVariant(QBrush(kindColor(row->kind))) : QVariant();
    case KindRole:
        return row->kind;
    case ScopeRole:
        return int(row->scope);
    default:
        return QVariant();
    }
}

void ConsoleContentModel::log(ScriptConsole::Scope scope, QString str)
{
    add(scope, LogKind, str);
}

void ConsoleContentModel::info(ScriptConsole::Scope scope, QString str)
{
    add(scope, InformationKind, str);
}

void ConsoleContentModel::warn(ScriptConsole::Scope scope, QString str)
{
    add(scope, WarningKind, str);
}

void ConsoleContentModel::error(ScriptConsole::Scope scope, QString str)
{
    add(scope, ErrorKind, str);
}

void ConsoleContentModel::add(ScriptConsole::Scope scope, qint32 kind, const QString &message)
{
    if (m_rows.size() >= rowLimit) {
        beginRemoveRows(QModelIndex(), 0, m_rows.size() - rowLimit);
        while (m_rows.size() >= rowLimit) {
            Row *oldest = m_rows.takeFirst();
            countDown(*oldest);
            delete oldest;
        }
        endRemoveRows();
    }
    beginInsertRows(QModelIndex(), m_rows.size(), m_rows.size());
    const QString text = QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz  "))
                         + QLatin1String(QMetaEnum::fromType<ScriptConsole::Scope>().valueToKey(scope))
                         + QStringLiteral(": ") + message;
    m_rows.append(new Row{scope, kind, text});
    ++counterOf(kind)[scope];
    emitCounterOf(kind);
    endInsertRows();
}

void ConsoleContentModel::countDown(const Row &row)
{
    int &count = counterOf(row.kind)[row.scope];
    count = qMax(0, count - 1);
    emitCounterOf(row.kind);
}

void ConsoleContentModel::clear(ScriptConsole::Scopes scopes)
{
    beginResetModel();
    QList<Row *> kept;
    for (Row *row : std::as_const(m_rows)) {
        if (scopes.testFlag(row->scope)) {
            countDown(*row);
            delete row;
        } else {
            kept.append(row);
        }
    }
    m_rows = kept;
    for (const int bit : scopeBits) {
        if (!(scopes & bit))
            continue;
        for (const qint32 kind : {ErrorKind, WarningKind, InformationKind, LogKind}) {
            counterOf(kind)[bit] = 0;
            emitCounterOf(kind);
        }
    }
    endResetModel();
}

QHash<int, int> &ConsoleContentModel::counterOf(qint32 kind)
{
    switch (kind) {
    case ErrorKind:
        return m_errors;
    case WarningKind:
        return m_warnings;
    case InformationKind:
        return m_informations;
    default:
        return m_logs;
    }
}

void ConsoleContentModel::emitCounterOf(qint32 kind)
{
    switch (kind) {
    case ErrorKind:
        emit errorsChanged();
        break;
    case WarningKind:
        emit warningsChanged();
        break;
    case InformationKind:
        emit informationsChanged();
        break;
    default:
        emit logsChanged();
        break;
    }
}

int ConsoleContentModel::count(const QHash<int, int> &counter, ScriptConsole::Scopes scopes)
{
    int total = 0;
    for (const int bit : scopeBits) {
        if (scopes & bit)
            total += counter.value(bit);
    }
    return total;
}

int ConsoleContentModel::errors(ScriptConsole::Scopes scopes) const
{
    return count(m_errors, scopes);
}

int ConsoleContentModel::warnings(ScriptConsole::Scopes scopes) const
{
    return count(m_warnings, scopes);
}

int ConsoleContentModel::informations(ScriptConsole::Scopes scopes) const
{
    return count(m_informations, scopes);
}

int ConsoleContentModel::logs(ScriptConsole::Scopes scopes) const
{
    return count(m_logs, scopes);
}

void ConsoleContentModel::connectNotify(const QMetaMethod &signal)
{
    if (signal == QMetaMethod::fromSignal(&ConsoleContentModel::errorsChanged))
        emit errorsChanged();
    else if (signal == QMetaMethod::fromSignal(&ConsoleContentModel::warningsChanged))
        emit warningsChanged();
    else if (signal == QMetaMethod::fromSignal(&ConsoleContentModel::informationsChanged))
        emit informationsChanged();
    else if (signal == QMetaMethod::fromSignal(&ConsoleContentModel::logsChanged))
        emit logsChanged();
}

ConsoleFilterModel::ConsoleFilterModel(QObject *parent)
    : QSortFilterProxyModel(parent)
{
}

void ConsoleFilterModel::setKindVisible(qint32 kind, bool visible)
{
    if (((m_kinds & kind) == kind) == visible)
        return;
    if (visible)
        m_kinds |= kind;
    else
        m_kinds &= ~kind;
    invalidateFilter();
}

void ConsoleFilterModel::setScopes(ScriptConsole::Scopes scopes)
{
    if (m_scopes == scopes)
        return;
    m_scopes = scopes;
    invalidateFilter();
}

bool ConsoleFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    const QModelIndex index = sourceModel()->index(sourceRow, 0, sourceParent);
    const int kind = index.data(ConsoleContentModel::KindRole).toInt();
    const int scope = index.data(ConsoleContentModel::ScopeRole).toInt();
    return inMask(kind, m_kinds) && inMask(scope, int(m_scopes));
}
