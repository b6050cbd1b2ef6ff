#pragma once

#include <QFrame>

class QToolButton;

// The button that shows the chosen material by name and icon, "Not assigned" for none.
class MaterialSelectWidget : public QFrame
{
    Q_OBJECT
public:
    explicit MaterialSelectWidget(QWidget *parent = nullptr);

    QToolButton *button() const { return m_buttonSelect; }
    void setText(const QString &name);
    void setIcon(const QIcon &icon);
    void setButtonEnabled(bool enabled);

signals:
    void buttonSelectClicked();

private:
    QToolButton *m_buttonSelect;
};
