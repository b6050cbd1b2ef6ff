#pragma once

#include "ui/Controls/FadeLabel.h"

class QCheckBox;
class QPushButton;

// Laid over a view whose geometry is out of date: "Apply" draws it again, and the
// check box stops the asking, so that later changes are drawn right away.
class ModifiedFadeLabel : public FadeLabel
{
    Q_OBJECT
public:
    explicit ModifiedFadeLabel(QWidget *parent = nullptr);

    bool isRightAway() const;
    // Sized by its rows, not by the label's own empty text.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public slots:
    void setRightAway(bool rightAway);

signals:
    void buttonClicked();
    void rightAwayToggled(bool rightAway);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *m_rightAwayRow;
    QCheckBox *m_rightAway;
};
