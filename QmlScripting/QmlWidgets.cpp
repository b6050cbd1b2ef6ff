#include "QmlScripting/QmlWidgets.h"

#include "ui/Controls/ControlsResources.h"

namespace {
// The icons are right-aligned so that they stand beside the field they belong to.
void showIcon(QLabel *label, const QString &resource)
{
    initControlsResources();
    label->setPixmap(QPixmap(resource));
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}
} // namespace

QmlPixmap::QmlPixmap(const QPixmap &pixmap, QObject *parent)
    : QObject(parent)
    , m_pixmap(pixmap)
{
}

QmlLabel::QmlLabel(QWidget *parent)
    : QLabel(parent)
{
}

QmlLabel::QmlLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
}

QmlLabel::QmlLabel(QmlPixmap *pixmap, QWidget *parent)
    : QLabel(parent)
{
    setScriptPixmap(pixmap);
}

void QmlLabel::setScriptPixmap(QmlPixmap *pixmap)
{
    m_pixmap = pixmap;
    setPixmap(pixmap ? pixmap->pixmap() : QPixmap());
}

QmlWarningIcon::QmlWarningIcon(QWidget *parent)
    : QLabel(parent)
{
    showIcon(this, QStringLiteral(":/status-warn.png"));
}

QmlExclamationIcon::QmlExclamationIcon(QWidget *parent)
    : QLabel(parent)
{
    showIcon(this, QStringLiteral(":/exclamation.png"));
}

QmlCheckBox::QmlCheckBox(QWidget *parent)
    : QmlCheckBox(QString(), parent)
{
}

QmlCheckBox::QmlCheckBox(const QString &text, QWidget *parent)
    : QCheckBox(text, parent)
{
    connect(this, &QAbstractButton::toggled, this, &QmlCheckBox::toggled);
}

void QmlCheckBox::setChecked(bool b)
{
    QCheckBox::setChecked(b);
}

QmlSpinBox::QmlSpinBox(QWidget *parent)
    : QSpinBox(parent)
{
}

void QmlSpinBox::setRange(int minimum, int maximum)
{
    QSpinBox::setRange(minimum, maximum);
}

QmlDoubleSpinBox::QmlDoubleSpinBox(QWidget *parent)
    : QDoubleSpinBox(parent)
{
}

void QmlDoubleSpinBox::setRange(double minimum, double maximum)
{
    QDoubleSpinBox::setRange(minimum, maximum);
}

QmlComboBox::QmlComboBox(QWidget *parent)
    : QComboBox(parent)
{
}

void QmlComboBox::addItem(const QString &text)
{
    QComboBox::addItem(text);
}

QmlGridLayout::QmlGridLayout(QWidget *parent)
    : QGridLayout(parent)
{
}

void QmlGridLayout::addWidget(QWidget *w)
{
    QLayout::addWidget(w);
}

void QmlGridLayout::addWidget(QWidget *w1, QWidget *w2)
{
    QLayout::addWidget(w1);
    QLayout::addWidget(w2);
}

void QmlGridLayout::addWidget(QWidget *w, int row, int column)
{
    QGridLayout::addWidget(w, rowOrNext(row), column);
}

void QmlGridLayout::addWidget(QWidget *w, int row, int column, int rowSpan, int columnSpan)
{
    QGridLayout::addWidget(w, rowOrNext(row), column, rowSpan, columnSpan);
}

void QmlGridLayout::addWidgets(QWidget *w1, QWidget *w2, int row, int column)
{
    const int at = rowOrNext(row);
    QGridLayout::addWidget(w1, at, column);
    QGridLayout::addWidget(w2, at, column + 1);
}

void QmlGridLayout::addWidgets(QWidget *w1, QWidget *w2, int row)
{
    addWidgets(w1, w2, row, 0);
}

void QmlGridLayout::addWidgets(QWidget *w1, QWidget *w2)
{
    addWidgets(w1, w2, -1, 0);
}

void QmlGridLayout::addWidgets(QWidget *w1, QWidget *w2, QWidget *w3, int row, int column)
{
    const int at = rowOrNext(row);
    QGridLayout::addWidget(w1, at, column);
    QGridLayout::addWidget(w2, at, column + 1);
    QGridLayout::addWidget(w3, at, column + 2);
}

void QmlGridLayout::addWidgets(QWidget *w1, QWidget *w2, QWidget *w3, int row)
{
    addWidgets(w1, w2, w3, row, 0);
}

void QmlGridLayout::addWidgets(QWidget *w1, QWidget *w2, QWidget *w3)
{
    addWidgets(w1, w2, w3, -1, 0);
}

QmlFormLayout::QmlFormLayout(QWidget *parent)
    : QFormLayout(parent)
{
}

void QmlFormLayout::addRow(QWidget *label, QWidget *field)
{
    QFormLayout::addRow(label, field);
}

void QmlFormLayout::addWidget(QWidget *widget)
{
    QLayout::addWidget(widget);
}
