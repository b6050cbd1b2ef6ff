#pragma once

#include <QWidget>

class QToolButton;

// The header of a section that its owner shows or hides: an arrow that points right
// while the section is closed and down while it is open.
class Spoiler : public QWidget
{
    Q_OBJECT
public:
    explicit Spoiler(const QString &text = QString(), QWidget *parent = nullptr);

    bool isChecked() const;
    void setChecked(bool checked);
    void setText(const QString &text);

signals:
    void toggled(bool checked);

private:
    void showArrow(bool checked);

    QToolButton *m_button;
};
