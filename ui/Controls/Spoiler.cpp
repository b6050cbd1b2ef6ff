#include "ui/Controls/Spoiler.h"

#include <QHBoxLayout>
#include <QToolButton>

Spoiler::Spoiler(const QString &text, QWidget *parent)
    : QWidget(parent)
    , m_button(new QToolButton(this))
{
    m_button->setObjectName(QStringLiteral("spoilerButton"));
    m_button->setStyleSheet(QStringLiteral("QToolButton { border: none; background-color: rgb(228, 228, 228); }"));
    m_button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_button->setCheckable(true);
    m_button->setChecked(false);
    m_button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_button->setText(text);
    showArrow(false);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_button);

    connect(m_button, &QToolButton::toggled, this, [this](bool checked) {
        showArrow(checked);
        emit toggled(checked);
    });
}

bool Spoiler::isChecked() const
{
    return m_button->isChecked();
}

void Spoiler::setChecked(bool checked)
{
    m_button->setChecked(checked);
}

void Spoiler::setText(const QString &text)
{
    m_button->setText(text);
}

void Spoiler::showArrow(bool checked)
{
    m_button->setArrowType(checked ? Qt::DownArrow : Qt::RightArrow);
}
