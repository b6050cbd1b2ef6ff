#pragma once

#include "ui/BaseGeometryWidget.h"

class Rotor;

// The rotor's geometry panel, built by the rotor's script.
class RotorGeometryWidget : public BaseGeometryWidget
{
    Q_OBJECT
public:
    explicit RotorGeometryWidget(Document *document, QWidget *parent = nullptr);

    void recreateRotorUI() { recreateUI(); }
    void updateRotorUI() { updateUI(); }
};
