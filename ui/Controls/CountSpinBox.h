#pragma once

#include <QSpinBox>

// A spin box for a count that must stay legal. Any text may be typed; it becomes a
// number, made legal by valueFromText, when Return or Enter is pressed or the focus
// leaves, instead of being refused keystroke by keystroke.
class CountSpinBox : public QSpinBox
{
    Q_OBJECT
public:
    explicit CountSpinBox(QWidget *parent = nullptr);

    QValidator::State validate(QString &input, int &pos) const override;

public slots:
    void setRange(int min, int max);

protected:
    // The typed number within the range; text that is no number keeps the value.
    int valueFromText(const QString &text) const override;
    // Subclasses make a typed number legal before it is limited to the range.
    virtual int legalCount(int count) const { return count; }

    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void commitTypedText();
};
