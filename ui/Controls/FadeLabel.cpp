#include "ui/Controls/FadeLabel.h"

FadeLabel::FadeLabel(QWidget *parent)
    : QLabel(parent)
{
    QFont larger = font();
    larger.setPointSizeF(larger.pointSizeF() * 1.5);
    setFont(larger);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    hide();
}
