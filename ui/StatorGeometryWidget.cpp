#include "ui/StatorGeometryWidget.h"

#include "QmlScripting/ScriptDescribeList.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"

StatorGeometryWidget::StatorGeometryWidget(Document *document, QWidget *parent)
    : BaseGeometryWidget(document->stator(), Document::GeometryStator, ScriptDescribeList::stators(),
                         document->rotor(), ScriptDescribeList::rotors(),
                         {tr("Stator geometry:"), tr("Edit stator"), tr("Open stator geometry editor"),
                          tr("Exit stator editor"), tr("Click <Edit stator> button to change parameters above"),
                          tr("Set stator.script to '%1'"), QStringLiteral("Settings/HideStatorEditHint"),
                          QStringLiteral("createStatorUI"), QStringLiteral("statorUI"), "Widget",
                          "Error: not found editor for stator property:",
                          "Error: found multiplied editors for stator property:"},
                         parent)
{
    setObjectName(QStringLiteral("StatorGeometryWidget"));
    connect(document->stator(), &Stator::scriptChanged, this, &StatorGeometryWidget::recreateStatorUI);
    recreateStatorUI();
}
