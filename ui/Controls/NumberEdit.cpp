#include "ui/Controls/NumberEdit.h"

#include "ui/Controls/CustomValidator.h"

#include <QKeyEvent>
#include <QToolTip>
#include <cmath>
#include <limits>

namespace {

const char *const markedStyle = "background-color: rgb(255, 252, 207);";
constexpr int rangeTipMilliseconds = 3000;
// Digits shown behind the decimal point at most.
constexpr int fractionDigits = 7;

} // namespace

NumberEdit::NumberEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_validator(new CustomValidator(std::numeric_limits<double>::lowest(), std::numeric_limits<double>::max(), 15,
                                      this))
    , m_tolerance(std::numeric_limits<double>::epsilon())
{
    m_validator->setTolerance(m_tolerance);
    setValidator(m_validator);
    connect(this, &QLineEdit::textEdited, this, &NumberEdit::markIfEdited);
    connect(this, &QLineEdit::editingFinished, this, &NumberEdit::finishEditing);
}

void NumberEdit::setValue(double value)
{
    const double shown = parsedText();
    setText(format(value));
    m_value = value;
    m_acceptedText = text();
    setStyleSheet(QString());
    if (std::abs(shown - value) > m_tolerance)
        emit valueChanged(value);
}

double NumberEdit::parsedText() const
{
    return parse(text());
}

double NumberEdit::parse(const QString &text) const
{
    return m_validator->locale().toDouble(m_validator->withLocalePoint(text));
}

QString NumberEdit::format(double value) const
{
    const int decimals = m_validator->decimals();
    if (decimals == 0)
        return QString::number(value, 'f', 0);
    // Zero has no magnitude; the sign does not change the number of digits.
    if (value == 0.0)
        return QStringLiteral("0");
    const int digits = int(std::lround(std::ceil(std::log10(std::abs(value))))) + fractionDigits;
    return QString::number(value, 'g', std::max(1, std::min(decimals, digits)));
}

double NumberEdit::minimumValue() const
{
    return m_validator->bottom();
}

double NumberEdit::maximumValue() const
{
    return m_validator->top();
}

int NumberEdit::decimals() const
{
    return m_validator->decimals();
}

void NumberEdit::setRange(double minimum, double maximum, int decimals)
{
    m_validator->setRange(minimum, maximum, decimals);
    fitToValidator();
}

void NumberEdit::setRange(double minimum, double maximum)
{
    setRange(minimum, maximum, m_validator->decimals());
}

void NumberEdit::setMinimumValue(double minimum)
{
    m_validator->setBottom(minimum);
    fitToValidator();
}

void NumberEdit::setMaximumValue(double maximum)
{
    m_validator->setTop(maximum);
    fitToValidator();
}

void NumberEdit::setDecimals(int decimals)
{
    m_validator->setDecimals(decimals);
    fitToValidator();
}

void NumberEdit::setTolerance(double tolerance)
{
    m_tolerance = tolerance;
    m_validator->setTolerance(tolerance);
}

void NumberEdit::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return && !hasAcceptableInput()) {
        const double number = parsedText();
        const QPoint corner = mapToGlobal(rect().bottomLeft());
        if (isAbove(number)) {
            QToolTip::showText(corner, tr("The value must be ≤ %1").arg(maximumValue(), 0, 'g'), this, QRect(),
                               rangeTipMilliseconds);
            event->ignore();
            return;
        }
        if (isBelow(number)) {
            QToolTip::showText(corner, tr("The value must be ≥ %1").arg(minimumValue(), 0, 'g'), this, QRect(),
                               rangeTipMilliseconds);
            event->ignore();
            return;
        }
    }
    QLineEdit::keyPressEvent(event);
}

void NumberEdit::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    revertText();
}

void NumberEdit::markIfEdited(const QString &text)
{
    setStyleSheet(text != m_acceptedText ? QString::fromLatin1(markedStyle) : QString());
}

void NumberEdit::finishEditing()
{
    if (text() == m_acceptedText)
        return;
    const double number = parsedText();
    if (std::abs(number - m_value) <= m_tolerance) {
        revertText();
        return;
    }
    emit valueEditingFinished(number);
    emit valueChanged(number);
}

void NumberEdit::revertText()
{
    setStyleSheet(QString());
    setText(m_acceptedText);
}

void NumberEdit::fitToValidator()
{
    if (text().isEmpty() || hasAcceptableInput())
        return;
    QString fitted = m_validator->withLocalePoint(text());
    m_validator->fixup(fitted);
    setValue(parse(fitted));
}

bool NumberEdit::isAbove(double number) const
{
    return number > maximumValue() + m_tolerance;
}

bool NumberEdit::isBelow(double number) const
{
    return number < minimumValue() - m_tolerance;
}
