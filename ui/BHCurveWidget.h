#pragma once

#include "materials/MaterialDescribe.h"
#include "ui/MaterialPlotWindow.h"

// The B-H curve of an iron: a smooth curve through the table and the table's points.
// A table that allows no spline is drawn as the polyline of its points.
class BHCurveWidget : public MaterialPlotWindow
{
    Q_OBJECT
public:
    BHCurveWidget(const MaterialIronDescribe &material, QWidget *parent = nullptr);
};
