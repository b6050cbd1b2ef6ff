#include "geometry/MotorElement.h"

#include <QDebug>
#include <QMetaEnum>

MotorElement::MotorElement(ScriptConsole::Scope scope, Document *document, QObject *parent)
    : CoreMotorElement(document, parent)
    , m_console(new ScriptConsole(scope, this))
{
}

QString MotorElement::geometryErrorText() const
{
    return elementErrorText(m_geometryErrors,
                            {DiametersOrder, GeometryEmpty, NotSymmetrical, BodiesOverlap},
                            objectName(), geometryErrorMessage);
}

QString MotorElement::middleTypeKey(MiddleType type)
{
    return QString::fromLatin1(QMetaEnum::fromType<MiddleType>().valueToKey(type));
}

MotorElement::MiddleType MotorElement::middleTypeFromKey(const QString &key)
{
    bool known = false;
    const int type = QMetaEnum::fromType<MiddleType>().keyToValue(key.toLatin1().constData(), &known);
    return known ? MiddleType(type) : Yoke;
}

bool MotorElement::isAirgapIndex(int index)
{
    if (index >= 1 && index <= 4)
        return true;
    qCritical() << "bad index";
    return false;
}
