#include "ui/ModifiedFadeLabel.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

ModifiedFadeLabel::ModifiedFadeLabel(QWidget *parent)
    : FadeLabel(parent)
    , m_rightAwayRow(new QWidget(this))
    , m_rightAway(new QCheckBox(tr("Do not ask again, apply changes right away"), m_rightAwayRow))
{
    setObjectName(QStringLiteral("ModifiedFadeLabel"));
    setStyleSheet(QStringLiteral("ModifiedFadeLabel { color: rgb(128, 128, 128); "
                                 "background-color: rgba(255, 252, 207, 200); border: 1px solid rgb(197, 197, 197); }"));
    auto *text = new QLabel(tr("Geometry modified"), this);
    text->setObjectName(QStringLiteral("labelText"));
    text->setAlignment(Qt::AlignCenter);
    auto *apply = new QPushButton(tr("Apply"), this);
    apply->setObjectName(QStringLiteral("buttonApply"));
    m_rightAwayRow->setObjectName(QStringLiteral("widgetRigthAway"));
    m_rightAway->setObjectName(QStringLiteral("checkBoxRigthAwayApplyChanges"));
    auto *line = new QFrame(m_rightAwayRow);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    auto *rightAwayLayout = new QVBoxLayout(m_rightAwayRow);
    rightAwayLayout->setContentsMargins(0, 0, 0, 0);
    rightAwayLayout->addWidget(line);
    rightAwayLayout->addWidget(m_rightAway);

    auto *grid = new QGridLayout(this);
    grid->addWidget(text, 0, 0, Qt::AlignCenter);
    grid->addWidget(apply, 1, 0, Qt::AlignCenter);
    grid->addWidget(m_rightAwayRow, 2, 0);

    connect(apply, &QPushButton::clicked, this, &ModifiedFadeLabel::buttonClicked);
    connect(m_rightAway, &QCheckBox::toggled, this, &ModifiedFadeLabel::rightAwayToggled);
}

bool ModifiedFadeLabel::isRightAway() const
{
    return m_rightAway->isChecked();
}

QSize ModifiedFadeLabel::sizeHint() const
{
    return layout()->totalSizeHint();
}

QSize ModifiedFadeLabel::minimumSizeHint() const
{
    return layout()->totalMinimumSize();
}

void ModifiedFadeLabel::setRightAway(bool rightAway)
{
    m_rightAway->setChecked(rightAway);
}

void ModifiedFadeLabel::showEvent(QShowEvent *event)
{
    FadeLabel::showEvent(event);
    // Once the user chose not to be asked, the choice is not offered again here.
    m_rightAwayRow->setVisible(!isRightAway());
}
