#pragma once

#include <QLineEdit>

class CustomValidator;

// The number field of every design value. What is typed stays text, marked while it
// differs from the stored value, until editing ends; only then is the number handed
// on, and the owner answers with setValue. Leaving the field without finishing drops
// what was typed.
class NumberEdit : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY valueChanged USER true)
public:
    explicit NumberEdit(QWidget *parent = nullptr);

    double value() const { return m_value; }
    void setValue(double value);

    // What the text stands for: "," and "." both are the decimal point.
    double parsedText() const;
    QString format(double value) const;

    double minimumValue() const;
    double maximumValue() const;
    int decimals() const;
    Q_INVOKABLE void setRange(double minimum, double maximum, int decimals);
    Q_INVOKABLE void setRange(double minimum, double maximum);
    Q_INVOKABLE void setMinimumValue(double minimum);
    Q_INVOKABLE void setMaximumValue(double maximum);
    Q_INVOKABLE void setDecimals(int decimals);

    double tolerance() const { return m_tolerance; }
    void setTolerance(double tolerance);

signals:
    void valueEditingFinished(double value);
    void valueChanged(double value);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    double parse(const QString &text) const;
    void markIfEdited(const QString &text);
    void finishEditing();
    void revertText();
    // A new range or precision may leave the shown number outside; it moves onto the bound.
    void fitToValidator();
    bool isAbove(double number) const;
    bool isBelow(double number) const;

    CustomValidator *m_validator;
    double m_value = 0.0;
    QString m_acceptedText;
    double m_tolerance;
};
