#include "QmlScripting/QmlWidgetsProvider.h"

#include "QmlScripting/JSEngine.h"
#include "QmlScripting/QmlWidgets.h"
#include "ui/Controls/EnumComboBoxes.h"
#include "ui/Controls/NumberEdit.h"
#include "ui/Controls/NumberPoleSpinBox.h"
#include "ui/Controls/NumberSlotSpinBox.h"

#include <QDebug>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QtQml>

namespace {
// Of two functions with one name the later one stands in the script world.
const char prologue[] =
    "function QWidget(parent = null){return QtWidgets.createQWidget(parent);}\n"
    "function QLabel(parent = null){return QtWidgets.createQLabel(parent);}\n"
    "function QLabel(text, parent = null){return QtWidgets.createQLabel(text, parent);}\n"
    "function QLineEdit(parent = null){return QtWidgets.createQLineEdit(parent);}\n"
    "function QLineEdit(text, parent = null){return QtWidgets.createQLineEdit(text, parent);}\n"
    "function QPushButton(parent = null){return QtWidgets.createQPushButton(parent);}\n"
    "function QPushButton(text, parent = null){return QtWidgets.createQPushButton(text, parent);}\n"
    "function QSpinBox(parent = null){return QtWidgets.createQSpinBox(parent);}\n"
    "function QDoubleSpinBox(parent = null){return QtWidgets.createQDoubleSpinBox(parent);}\n"
    "function QComboBox(parent = null){return QtWidgets.createQComboBox(parent);}\n"
    "function QCheckBox(parent = null){return QtWidgets.createQCheckBox(parent);}\n"
    "function QCheckBox(text, parent = null){return QtWidgets.createQCheckBox(text, parent);}\n"
    "function QGroupBox(parent = null){return QtWidgets.createQGroupBox(parent);}\n"
    "function QGroupBox(text, parent = null){return QtWidgets.createQGroupBox(text, parent);}\n"
    "function NumberEdit(parent = null){return QtWidgets.createNumberEdit(parent);}\n"
    "function WindingLayersComboBox(parent = null){return QtWidgets.createWindingLayersComboBox(parent);}\n"
    "function WindingLayersOrientationComboBox(parent = null){return "
    "QtWidgets.createWindingLayersOrientationComboBox(parent);}\n"
    "function WindingTypeComboBox(parent = null){return QtWidgets.createWindingTypeComboBox(parent);}\n"
    "function StatorTypeComboBox(parent = null){return QtWidgets.createStatorTypeComboBox(parent);}\n"
    "function RotorTypeComboBox(parent = null){return QtWidgets.createRotorTypeComboBox(parent);}\n"
    "function PoleArrangementComboBox(parent = null){return QtWidgets.createPoleArrangementComboBox(parent);}\n"
    "function NumberSlotSpinBox(parent = null){return QtWidgets.createNumberSlotSpinBox(parent);}\n"
    "function NumberPoleSpinBox(parent = null){return QtWidgets.createNumberPoleSpinBox(parent);}\n"
    "function StatorConnectionComboBox(parent = null){return QtWidgets.createWindingConnectionComboBox(parent);}\n"
    "function WindingConnectionComboBox(parent = null){return QtWidgets.createWindingConnectionComboBox(parent);}\n"
    "function QGridLayout(parent = null){return QtWidgets.createQGridLayout(parent);}\n"
    "function QFormLayout(parent = null){return QtWidgets.createQFormLayout(parent);}\n"
    "function ExclamationIcon(parent = null){return QtWidgets.createExclamationIcon(parent);}\n"
    "function WarningIcon(parent = null){return QtWidgets.createWarningIcon(parent);}\n";

void registerTypes()
{
    qRegisterMetaType<QmlLabel *>("QmlLabel*");
    qRegisterMetaType<QmlWarningIcon *>("QmlWarningIcon*");
    qRegisterMetaType<QmlExclamationIcon *>("QmlExclamationIcon*");
    qRegisterMetaType<QmlCheckBox *>("QmlCheckBox*");
    qRegisterMetaType<QmlSpinBox *>("QmlSpinBox*");
    qRegisterMetaType<QmlDoubleSpinBox *>("QmlDoubleSpinBox*");
    qRegisterMetaType<QmlComboBox *>("QmlComboBox*");
    qRegisterMetaType<QmlGridLayout *>("QmlGridLayout*");
    qRegisterMetaType<QmlFormLayout *>("QmlFormLayout*");
    qRegisterMetaType<QLineEdit *>("QLineEdit*");
    qRegisterMetaType<QPushButton *>("QPushButton*");
    qRegisterMetaType<QGroupBox *>("QGroupBox*");
    qRegisterMetaType<NumberEdit *>("NumberEdit*");
    qRegisterMetaType<WindingLayersComboBox *>("WindingLayersComboBox*");
    qRegisterMetaType<WindingLayersOrientationComboBox *>("WindingLayersOrientationComboBox*");
    qRegisterMetaType<WindingTypeComboBox *>("WindingTypeComboBox*");
    qRegisterMetaType<MiddleTypeComboBox *>("MiddleTypeComboBox*");
    qRegisterMetaType<PoleArrangementComboBox *>("PoleArrangementComboBox*");
    qRegisterMetaType<NumberSlotSpinBox *>("NumberSlotSpinBox*");
    qRegisterMetaType<NumberPoleSpinBox *>("NumberPoleSpinBox*");
    qRegisterMetaType<WindingConnectionComboBox *>("WindingConnectionComboBox*");
}
} // namespace

QmlWidgetsProvider::QmlWidgetsProvider(QObject *parent)
    : QObject(parent)
{
    setObjectName(QStringLiteral("QtWidgetsProvider"));
}

void QmlWidgetsProvider::initialize(JSEngine *engine)
{
    registerTypes();
    qmlRegisterType<QmlWidgetsProvider>("ScriptQtWidgets", 1, 0, "QtWidgets");
    engine->installObject(QStringLiteral("QtWidgets"), new QmlWidgetsProvider(engine));
    const QJSValue result = engine->evaluate(QString::fromLatin1(prologue), QString(), 1);
    if (result.isError())
        qCritical().noquote() << JSEngine::errorString(result);
}

QWidget *QmlWidgetsProvider::createQWidget(QWidget *parent)
{
    return new QWidget(parent);
}

QmlLabel *QmlWidgetsProvider::createQLabel(QWidget *parent)
{
    return new QmlLabel(parent);
}

QmlLabel *QmlWidgetsProvider::createQLabel(const QString &text, QWidget *parent)
{
    return new QmlLabel(text, parent);
}

QmlLabel *QmlWidgetsProvider::createQLabel(QmlPixmap *pixmap, QWidget *parent)
{
    return new QmlLabel(pixmap, parent);
}

QmlWarningIcon *QmlWidgetsProvider::createWarningIcon(QWidget *parent)
{
    return new QmlWarningIcon(parent);
}

QmlExclamationIcon *QmlWidgetsProvider::createExclamationIcon(QWidget *parent)
{
    return new QmlExclamationIcon(parent);
}

QLineEdit *QmlWidgetsProvider::createQLineEdit(QWidget *parent)
{
    return new QLineEdit(parent);
}

QLineEdit *QmlWidgetsProvider::createQLineEdit(const QString &text, QWidget *parent)
{
    return new QLineEdit(text, parent);
}

QPushButton *QmlWidgetsProvider::createQPushButton(QWidget *parent)
{
    return new QPushButton(parent);
}

QPushButton *QmlWidgetsProvider::createQPushButton(const QString &text, QWidget *parent)
{
    return new QPushButton(text, parent);
}

QmlSpinBox *QmlWidgetsProvider::createQSpinBox(QWidget *parent)
{
    return new QmlSpinBox(parent);
}

QmlDoubleSpinBox *QmlWidgetsProvider::createQDoubleSpinBox(QWidget *parent)
{
    return new QmlDoubleSpinBox(parent);
}

QmlComboBox *QmlWidgetsProvider::createQComboBox(QWidget *parent)
{
    return new QmlComboBox(parent);
}

QGroupBox *QmlWidgetsProvider::createQGroupBox(QWidget *parent)
{
    return new QGroupBox(parent);
}

QGroupBox *QmlWidgetsProvider::createQGroupBox(const QString &text, QWidget *parent)
{
    return new QGroupBox(text, parent);
}

QmlCheckBox *QmlWidgetsProvider::createQCheckBox(QWidget *parent)
{
    return new QmlCheckBox(parent);
}

QmlCheckBox *QmlWidgetsProvider::createQCheckBox(const QString &text, QWidget *parent)
{
    return new QmlCheckBox(text, parent);
}

NumberEdit *QmlWidgetsProvider::createNumberEdit(QWidget *parent)
{
    return new NumberEdit(parent);
}

WindingLayersComboBox *QmlWidgetsProvider::createWindingLayersComboBox(QWidget *parent)
{
    return new WindingLayersComboBox(parent);
}

WindingLayersOrientationComboBox *QmlWidgetsProvider::createWindingLayersOrientationComboBox(QWidget *parent)
{
    return new WindingLayersOrientationComboBox(parent);
}

WindingTypeComboBox *QmlWidgetsProvider::createWindingTypeComboBox(QWidget *parent)
{
    return new WindingTypeComboBox(parent);
}

MiddleTypeComboBox *QmlWidgetsProvider::createStatorTypeComboBox(QWidget *parent)
{
    return new MiddleTypeComboBox(parent);
}

MiddleTypeComboBox *QmlWidgetsProvider::createRotorTypeComboBox(QWidget *parent)
{
    return new MiddleTypeComboBox(parent);
}

PoleArrangementComboBox *QmlWidgetsProvider::createPoleArrangementComboBox(QWidget *parent)
{
    return new PoleArrangementComboBox(parent);
}

NumberSlotSpinBox *QmlWidgetsProvider::createNumberSlotSpinBox(QWidget *parent)
{
    return new NumberSlotSpinBox(parent);
}

NumberPoleSpinBox *QmlWidgetsProvider::createNumberPoleSpinBox(QWidget *parent)
{
    return new NumberPoleSpinBox(parent);
}

WindingConnectionComboBox *QmlWidgetsProvider::createWindingConnectionComboBox(QWidget *parent)
{
    return new WindingConnectionComboBox(parent);
}

QmlGridLayout *QmlWidgetsProvider::createQGridLayout(QWidget *parent)
{
    return new QmlGridLayout(parent);
}

QmlFormLayout *QmlWidgetsProvider::createQFormLayout(QWidget *parent)
{
    return new QmlFormLayout(parent);
}
