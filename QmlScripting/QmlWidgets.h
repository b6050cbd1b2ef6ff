#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QObject>
#include <QPixmap>
#include <QPointer>
#include <QSpinBox>

// Widgets as scripts build their panels with them. Scripts reach every Qt property,
// signal and slot of a widget already; these classes add only the overloads and
// plain members that the engine could not call otherwise.

// A picture a script can pass around.
class QmlPixmap : public QObject
{
    Q_OBJECT
public:
    explicit QmlPixmap(const QPixmap &pixmap, QObject *parent = nullptr);
    const QPixmap &pixmap() const { return m_pixmap; }

private:
    QPixmap m_pixmap;
};

class QmlLabel : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(QmlPixmap *pixmap READ scriptPixmap WRITE setScriptPixmap)
public:
    explicit QmlLabel(QWidget *parent = nullptr);
    QmlLabel(const QString &text, QWidget *parent);
    // A null holder shows an empty picture.
    QmlLabel(QmlPixmap *pixmap, QWidget *parent);

    QmlPixmap *scriptPixmap() const { return m_pixmap; }
    void setScriptPixmap(QmlPixmap *pixmap);

private:
    // The holder may belong to the script engine, which can collect it.
    QPointer<QmlPixmap> m_pixmap;
};

// The icons tell the element editors that a panel shows a warning or an error.
class QmlWarningIcon : public QLabel
{
    Q_OBJECT
public:
    explicit QmlWarningIcon(QWidget *parent = nullptr);
};

class QmlExclamationIcon : public QLabel
{
    Q_OBJECT
public:
    explicit QmlExclamationIcon(QWidget *parent = nullptr);
};

class QmlCheckBox : public QCheckBox
{
    Q_OBJECT
    Q_PROPERTY(bool checked READ isChecked WRITE setChecked NOTIFY toggled USER true)
public:
    explicit QmlCheckBox(QWidget *parent = nullptr);
    QmlCheckBox(const QString &text, QWidget *parent);

public slots:
    void setChecked(bool b);

signals:
    // moc takes a notify signal with a value only from the class itself; this one
    // repeats the button's own.
    void toggled(bool checked);
};

class QmlSpinBox : public QSpinBox
{
    Q_OBJECT
public:
    explicit QmlSpinBox(QWidget *parent = nullptr);
    Q_INVOKABLE void setRange(int minimum, int maximum);
};

class QmlDoubleSpinBox : public QDoubleSpinBox
{
    Q_OBJECT
public:
    explicit QmlDoubleSpinBox(QWidget *parent = nullptr);
    Q_INVOKABLE void setRange(double minimum, double maximum);
};

class QmlComboBox : public QComboBox
{
    Q_OBJECT
public:
    explicit QmlComboBox(QWidget *parent = nullptr);
    // An item with no data.
    Q_INVOKABLE void addItem(const QString &text);
};

// A row of -1 is the next free row, so that consecutive calls fill one row after
// another.
class QmlGridLayout : public QGridLayout
{
    Q_OBJECT
public:
    explicit QmlGridLayout(QWidget *parent = nullptr);

    Q_INVOKABLE void addWidget(QWidget *w);
    Q_INVOKABLE void addWidget(QWidget *w1, QWidget *w2);
    Q_INVOKABLE void addWidget(QWidget *w, int row, int column);
    Q_INVOKABLE void addWidget(QWidget *w, int row, int column, int rowSpan, int columnSpan);

    Q_INVOKABLE void addWidgets(QWidget *w1, QWidget *w2, int row, int column);
    Q_INVOKABLE void addWidgets(QWidget *w1, QWidget *w2, int row);
    Q_INVOKABLE void addWidgets(QWidget *w1, QWidget *w2);
    Q_INVOKABLE void addWidgets(QWidget *w1, QWidget *w2, QWidget *w3, int row, int column);
    Q_INVOKABLE void addWidgets(QWidget *w1, QWidget *w2, QWidget *w3, int row);
    Q_INVOKABLE void addWidgets(QWidget *w1, QWidget *w2, QWidget *w3);

private:
    int rowOrNext(int row) const { return row == -1 ? rowCount() : row; }
};

class QmlFormLayout : public QFormLayout
{
    Q_OBJECT
public:
    explicit QmlFormLayout(QWidget *parent = nullptr);
    Q_INVOKABLE void addRow(QWidget *label, QWidget *field);
    Q_INVOKABLE void addWidget(QWidget *widget);
};
