#include "ui/MaterialSelectWidget.h"

#include <QHBoxLayout>
#include <QToolButton>

MaterialSelectWidget::MaterialSelectWidget(QWidget *parent) : QFrame(parent), m_buttonSelect(new QToolButton(this))
{
    m_buttonSelect->setObjectName(QStringLiteral("buttonSelect"));
    m_buttonSelect->setText(tr("Material name"));
    m_buttonSelect->setIcon(QIcon(QStringLiteral(":/prohibition.png")));
    m_buttonSelect->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_buttonSelect->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // A long name may be cut rather than widen the panel it stands in.
    m_buttonSelect->setMinimumWidth(130);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_buttonSelect);
    connect(m_buttonSelect, &QToolButton::clicked, this, &MaterialSelectWidget::buttonSelectClicked);
}

void MaterialSelectWidget::setText(const QString &name)
{
    m_buttonSelect->setText(name.isEmpty() ? tr("Not assigned") : name);
}

void MaterialSelectWidget::setIcon(const QIcon &icon)
{
    m_buttonSelect->setIcon(icon);
}

void MaterialSelectWidget::setButtonEnabled(bool enabled)
{
    m_buttonSelect->setEnabled(enabled);
}
