#include "ui/MotorGeometryEditor.h"

#include <QFrame>
#include <QVBoxLayout>

#include "ui/RotorGeometryWidget.h"
#include "ui/StatorGeometryWidget.h"

MotorGeometryEditor::MotorGeometryEditor(Document *document, QWidget *parent)
    : QScrollArea(parent)
{
    setObjectName(QStringLiteral("MotorGeometryEditor"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    auto *content = new QWidget(this);
    auto *layout = new QVBoxLayout(content);
    m_stator = new StatorGeometryWidget(document, content);
    layout->addWidget(m_stator);
    auto *line = new QFrame(content);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    layout->addWidget(line);
    m_rotor = new RotorGeometryWidget(document, content);
    layout->addWidget(m_rotor);
    layout->addStretch();
    setWidget(content);
}
