#pragma once

#include <QDoubleValidator>

// A double validator that accepts "," and "." alike as the decimal point and lets a
// number stand on a bound within a tolerance, so that a value that reaches the field
// through arithmetic is not refused for its last bit.
class CustomValidator : public QDoubleValidator
{
    Q_OBJECT
public:
    CustomValidator(double bottom, double top, int decimals, QObject *parent = nullptr);

    double tolerance() const { return m_tolerance; }
    void setTolerance(double tolerance) { m_tolerance = tolerance; }

    // The text with every "," and "." made the locale's decimal point.
    QString withLocalePoint(const QString &input) const;

    State validate(QString &input, int &pos) const override;
    // Brings a number beyond a bound onto it and drops trailing zeros of a fraction.
    void fixup(QString &input) const override;

private:
    double m_tolerance;
};
