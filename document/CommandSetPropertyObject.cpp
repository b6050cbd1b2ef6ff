#include "document/CommandSetPropertyObject.h"

#include <QDataStream>
#include <QDebug>
#include <QJsonArray>
#include <QMetaEnum>
#include <QMetaProperty>
#include <cmath>
#include <limits>

#include "base/StreamChecks.h"
#include "document/Document.h"
#include "document/ModelRanges.h"

namespace {

const int historyStreamVersion = QDataStream::Qt_5_13; // version 19

QString encodeValue(const QVariant &value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(historyStreamVersion);
    stream << value;
    return QString::fromLatin1(bytes.toBase64());
}

QVariant decodeValue(const QString &text)
{
    QByteArray bytes = QByteArray::fromBase64(text.toLatin1());
    QDataStream stream(&bytes, QIODevice::ReadOnly);
    stream.setVersion(historyStreamVersion);
    QVariant value;
    StreamChecks::readVariant(stream, value);
    return value;
}

QString displayText(const QVariant &value)
{
    if (value.type() != QVariant::Map)
        return value.toString();
    QStringList entries;
    const QVariantMap map = value.toMap();
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        entries << QStringLiteral("%1: %2").arg(it.key(), it.value().toString());
    return QLatin1Char('{') + entries.join(QStringLiteral(", ")) + QLatin1Char('}');
}

// The configuration mirror is called "scriptConfig" inside but "config" to the user.
QString displayObjectName(const QObject *target)
{
    QString name = target->objectName();
    if (name.startsWith(QLatin1String("script")) && name.size() > 6) {
        name.remove(0, 6);
        name[0] = name.at(0).toLower();
    }
    return name;
}

} // namespace

CommandSetPropertyObject::CommandSetPropertyObject(QObject *target, const QByteArray &name, const QVariant &newValue,
                                                   const QVariant &previousValue, UndoCommand *parent)
    : UndoCommand(parent)
    , m_target(target)
    , m_name(name)
    , m_newValue(newValue)
    , m_previousValue(previousValue)
{
}

CommandSetPropertyObject::CommandSetPropertyObject(QObject *target, const QByteArray &name, const QVariant &newValue,
                                                   UndoCommand *parent)
    : CommandSetPropertyObject(target, name, newValue, QVariant(), parent)
{
}

void CommandSetPropertyObject::logChange(const char *direction) const
{
    qInfo().noquote() << QStringLiteral(">>>   %1 %2.%3 from '%4' to '%5'")
                             .arg(QLatin1String(direction), m_target->objectName(), QString::fromLatin1(m_name),
                                  displayText(m_previousValue), displayText(m_newValue));
}

void CommandSetPropertyObject::redo()
{
    if (!m_previousValue.isValid())
        m_previousValue = m_target->property(m_name.constData());
    logChange("Redo");
    setText(QStringLiteral("Set %1.%2 to '%3'")
                .arg(displayObjectName(m_target), QString::fromLatin1(m_name), m_newValue.toString()));
    m_target->setProperty(m_name.constData(), m_newValue);
    if (childCount() > 0) {
        qInfo() << ">>> Redo batch cmd" << text();
        QUndoCommand::redo();
    }
}

void CommandSetPropertyObject::undo()
{
    logChange("Undo");
    m_target->setProperty(m_name.constData(), m_previousValue);
    if (childCount() > 0) {
        qInfo() << ">>> Undo batch cmd" << text();
        QUndoCommand::undo();
    }
}

QJsonObject CommandSetPropertyObject::toJson() const
{
    return {{QStringLiteral("type"), QStringLiteral("CommandSetPropertyObject")},
            {QStringLiteral("object"), m_target->objectName()},
            {QStringLiteral("nameProp"), QString::fromLatin1(m_name)},
            {QStringLiteral("prevValue"), encodeValue(m_previousValue)},
            {QStringLiteral("newValue"), encodeValue(m_newValue)}};
}

CommandSetPropertyObject *CommandSetPropertyObject::fromJson(const QJsonObject &json, Document *document,
                                                             UndoCommand *parent)
{
    const QStringList required = {QStringLiteral("object"), QStringLiteral("nameProp"), QStringLiteral("newValue"),
                                  QStringLiteral("prevValue")};
    for (const QString &key : required) {
        if (!json.contains(key))
            return nullptr;
    }
    const QString objectName = json.value(QStringLiteral("object")).toString();
    QObject *target = document->elementByName(objectName);
    if (!target) {
        qCritical() << "Error: UndoStack: unknown object with name" << objectName;
        return nullptr;
    }
    const QByteArray name = json.value(QStringLiteral("nameProp")).toString().toLatin1();
    if (!target->property(name.constData()).isValid()) {
        qCritical() << "Error: UndoStack: object" << objectName << "has not property" << name;
        return nullptr;
    }
    const QVariant newValue = decodeValue(json.value(QStringLiteral("newValue")).toString());
    const QVariant previousValue = decodeValue(json.value(QStringLiteral("prevValue")).toString());
    // Replaying the history applies these values to the design. A declared property
    // takes no value that doesn't convert to its type; anything else reaches the model.
    const int index = target->metaObject()->indexOfProperty(name.constData());
    const bool declared = index >= 0;
    // An enumerated property takes a number as it stands: the model switches on its
    // enumerators and indexes tables by them, so a number outside them is refused.
    const QMetaEnum enumeration = declared ? target->metaObject()->property(index).enumerator() : QMetaEnum();
    for (const QVariant &value : {newValue, previousValue}) {
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        const bool reachesModel = value.isValid() && (isNumber || !declared);
        const QString outOfRange = ModelRanges::check(QString::fromLatin1(name), value);
        if (reachesModel && !outOfRange.isEmpty()) {
            qCritical().noquote() << "Error: UndoStack:" << outOfRange;
            return nullptr;
        }
        const bool whole = std::abs(number) <= std::numeric_limits<int>::max() && number == std::floor(number);
        if (isNumber && enumeration.isValid() && !enumeration.isFlag()
            && !(whole && enumeration.valueToKey(int(number)))) {
            qCritical().noquote() << "Error: UndoStack:" << QStringLiteral("%1 = %2 is no value of %3")
                                                                .arg(QString::fromLatin1(name), value.toString(),
                                                                     QString::fromLatin1(enumeration.name()));
            return nullptr;
        }
    }
    return new CommandSetPropertyObject(target, name, newValue, previousValue, parent);
}
