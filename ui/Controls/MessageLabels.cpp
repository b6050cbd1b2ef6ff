#include "ui/Controls/MessageLabels.h"

namespace {

void styleMessage(QLabel *label, const char *style)
{
    label->setMargin(0);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    label->setStyleSheet(QLatin1String(style));
    label->hide();
}

} // namespace

ErrorLabel::ErrorLabel(QWidget *parent)
    : QLabel(parent)
{
    styleMessage(this, "color: rgb(128, 0, 0); background-color: rgb(255, 217, 217); "
                       "border: 1px solid rgb(255, 197, 197);");
}

WarningLabel::WarningLabel(QWidget *parent)
    : QLabel(parent)
{
    styleMessage(this, "color: rgb(128, 128, 0); background-color: rgb(255, 255, 217); "
                       "border: 1px solid rgb(255, 255, 197);");
}
