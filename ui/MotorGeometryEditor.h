#pragma once

#include <QScrollArea>

class Document;
class RotorGeometryWidget;
class StatorGeometryWidget;

// The Geometry Editor page: the stator's and the rotor's geometry panels, one below
// the other, scrolled together.
class MotorGeometryEditor : public QScrollArea
{
    Q_OBJECT
public:
    explicit MotorGeometryEditor(Document *document, QWidget *parent = nullptr);

    StatorGeometryWidget *statorWidget() const { return m_stator; }
    RotorGeometryWidget *rotorWidget() const { return m_rotor; }

private:
    StatorGeometryWidget *m_stator;
    RotorGeometryWidget *m_rotor;
};
