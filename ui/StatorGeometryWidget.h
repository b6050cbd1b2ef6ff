#pragma once

#include "ui/BaseGeometryWidget.h"

class Stator;

// The stator's geometry panel, built by the stator's script.
class StatorGeometryWidget : public BaseGeometryWidget
{
    Q_OBJECT
public:
    explicit StatorGeometryWidget(Document *document, QWidget *parent = nullptr);

    void recreateStatorUI() { recreateUI(); }
    void updateStatorUI() { updateUI(); }
};
