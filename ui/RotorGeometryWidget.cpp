#include "ui/RotorGeometryWidget.h"

#include "QmlScripting/ScriptDescribeList.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"

RotorGeometryWidget::RotorGeometryWidget(Document *document, QWidget *parent)
    : BaseGeometryWidget(document->rotor(), Document::GeometryRotor, ScriptDescribeList::rotors(),
                         document->stator(), ScriptDescribeList::stators(),
                         {tr("Rotor geometry:"), tr("Edit rotor"), tr("Open rotor geometry editor"),
                          tr("Exit rotor editor"), tr("Click <Edit rotor> button to change parameters above"),
                          tr("Set rotor.script to '%1'"), QStringLiteral("Settings/HideRotorEditHint"),
                          QStringLiteral("createRotorUI"), QStringLiteral("rotorUI"), "Error: Widget",
                          "Not found editor for rotor property:",
                          "Error: found multiplied editors for rotor property:"},
                         parent)
{
    setObjectName(QStringLiteral("RotorGeometryWidget"));
    connect(document->rotor(), &Rotor::scriptChanged, this, &RotorGeometryWidget::recreateRotorUI);
    recreateRotorUI();
}
