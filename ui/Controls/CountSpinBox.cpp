#include "ui/Controls/CountSpinBox.h"

#include <QKeyEvent>
#include <QLineEdit>

CountSpinBox::CountSpinBox(QWidget *parent)
    : QSpinBox(parent)
{
}

QValidator::State CountSpinBox::validate(QString &, int &) const
{
    return QValidator::Intermediate;
}

void CountSpinBox::setRange(int min, int max)
{
    QSpinBox::setRange(min, max);
}

int CountSpinBox::valueFromText(const QString &text) const
{
    bool ok = false;
    const int count = text.trimmed().toInt(&ok);
    if (!ok)
        return value();
    return qBound(minimum(), legalCount(count), maximum());
}

void CountSpinBox::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        commitTypedText();
    QSpinBox::keyPressEvent(event);
}

void CountSpinBox::focusOutEvent(QFocusEvent *event)
{
    commitTypedText();
    QSpinBox::focusOutEvent(event);
}

void CountSpinBox::commitTypedText()
{
    setValue(valueFromText(cleanText()));
}
