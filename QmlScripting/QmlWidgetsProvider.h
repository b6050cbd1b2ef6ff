#pragma once

#include <QObject>
#include <QString>

class JSEngine;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QWidget;
class QmlCheckBox;
class QmlComboBox;
class QmlDoubleSpinBox;
class QmlExclamationIcon;
class QmlFormLayout;
class QmlGridLayout;
class QmlLabel;
class QmlPixmap;
class QmlSpinBox;
class QmlWarningIcon;
class MiddleTypeComboBox;
class NumberEdit;
class NumberPoleSpinBox;
class NumberSlotSpinBox;
class PoleArrangementComboBox;
class WindingConnectionComboBox;
class WindingLayersComboBox;
class WindingLayersOrientationComboBox;
class WindingTypeComboBox;

// The object scripts reach as `QtWidgets`: each slot makes one widget or layout for
// a script-built panel. Qt's parent rules decide who owns it; what has no parent
// belongs to the script engine. Widgets live on the GUI thread only.
class QmlWidgetsProvider : public QObject
{
    Q_OBJECT
public:
    explicit QmlWidgetsProvider(QObject *parent = nullptr);

    // Installs the one provider of the engine as `QtWidgets`, with the script
    // functions QLabel(), NumberEdit() and the others.
    static void initialize(JSEngine *engine);

public slots:
    QWidget *createQWidget(QWidget *parent);
    QmlLabel *createQLabel(QWidget *parent);
    QmlLabel *createQLabel(const QString &text, QWidget *parent);
    QmlLabel *createQLabel(QmlPixmap *pixmap, QWidget *parent);
    QmlWarningIcon *createWarningIcon(QWidget *parent);
    QmlExclamationIcon *createExclamationIcon(QWidget *parent);
    QLineEdit *createQLineEdit(QWidget *parent);
    QLineEdit *createQLineEdit(const QString &text, QWidget *parent);
    QPushButton *createQPushButton(QWidget *parent);
    QPushButton *createQPushButton(const QString &text, QWidget *parent);
    QmlSpinBox *createQSpinBox(QWidget *parent);
    QmlDoubleSpinBox *createQDoubleSpinBox(QWidget *parent);
    QmlComboBox *createQComboBox(QWidget *parent);
    QGroupBox *createQGroupBox(QWidget *parent);
    QGroupBox *createQGroupBox(const QString &text, QWidget *parent);
    QmlCheckBox *createQCheckBox(QWidget *parent);
    QmlCheckBox *createQCheckBox(const QString &text, QWidget *parent);
    NumberEdit *createNumberEdit(QWidget *parent);
    WindingLayersComboBox *createWindingLayersComboBox(QWidget *parent);
    WindingLayersOrientationComboBox *createWindingLayersOrientationComboBox(QWidget *parent);
    WindingTypeComboBox *createWindingTypeComboBox(QWidget *parent);
    MiddleTypeComboBox *createStatorTypeComboBox(QWidget *parent);
    MiddleTypeComboBox *createRotorTypeComboBox(QWidget *parent);
    PoleArrangementComboBox *createPoleArrangementComboBox(QWidget *parent);
    NumberSlotSpinBox *createNumberSlotSpinBox(QWidget *parent);
    NumberPoleSpinBox *createNumberPoleSpinBox(QWidget *parent);
    WindingConnectionComboBox *createWindingConnectionComboBox(QWidget *parent);
    QmlGridLayout *createQGridLayout(QWidget *parent);
    QmlFormLayout *createQFormLayout(QWidget *parent);
};
