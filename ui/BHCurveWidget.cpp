#include "ui/BHCurveWidget.h"

#include <algorithm>
#include <qcustomplot.h>

BHCurveWidget::BHCurveWidget(const MaterialIronDescribe &material, QWidget *parent)
    : MaterialPlotWindow(tr("B-H curve: %1").arg(material.name), material.name, parent)
{
    plot()->xAxis->setLabel(tr("Magnetic field intensity, %1").arg(material.unitH));
    plot()->yAxis->setLabel(tr("Magnetic flux density, %1").arg(material.unitB));

    const QVector<double> h(material.curveH.begin(), material.curveH.end());
    const QVector<double> b(material.curveB.begin(), material.curveB.end());
    if (!h.isEmpty() && h.size() == b.size()) {
        const auto [lowestH, highestH] = std::minmax_element(h.cbegin(), h.cend());
        const auto [lowestB, highestB] = std::minmax_element(b.cbegin(), b.cend());
        plot()->xAxis->setRange(*lowestH, *highestH);
        plot()->yAxis->setRange(*lowestB, *highestB);
        const QColor color = nextColor();
        addLine(curveThrough(h, b, 1000), tr("B-H curve"), QPen(color, 1.0));
        addMarks(h, b, color);
    }
    zoomFit();
}
