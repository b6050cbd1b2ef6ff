#pragma once

#include "ui/Viewer/GeometryViewer.h"

class QCheckBox;
class QLabel;
class WindingScene;

// The winding in 3D, with a check box for each phase and each stator face and a note
// in the middle of the view when nothing is left to show.
class WindingViewer : public GeometryViewer
{
    Q_OBJECT
public:
    // Takes ownership of the scene.
    explicit WindingViewer(WindingScene *scene, QWidget *parent = nullptr);

    WindingScene *windingScene() const;
    QString note() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void showChecks();
    void checkToggled();
    void showNote();

    QWidget *m_panel;
    QList<QCheckBox *> m_phases;
    QList<QCheckBox *> m_layouts;
    QLabel *m_note;
};
