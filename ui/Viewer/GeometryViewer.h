#pragma once

#include "ui/Viewer/View.h"

class ErrorLabel;
class GeometryScene;
class QLabel;
class WarningLabel;

// A view that shows one scene: it displays the scene's objects whenever the scene
// is redrawn, tells the scene when it is on screen, and shows the scene's
// progress in front of the picture.
class GeometryViewer : public occ::View
{
    Q_OBJECT
public:
    // Takes ownership of the scene.
    explicit GeometryViewer(GeometryScene *scene, QWidget *parent = nullptr);

    GeometryScene *scene() const { return m_scene; }
    QString progressText() const;

    // The bars along the bottom of the view; an empty text hides its bar.
    void setErrorText(const QString &text);
    void setWarningText(const QString &text);
    QString errorText() const;
    QString warningText() const;

signals:
    void errorLinkActivated(QString link);
    void warningLinkActivated(QString link);
    void modeRulerChanged(bool on);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void showScene();
    void showProgress(const QString &text);
    void selectionInView();

    GeometryScene *m_scene;
    QLabel *m_progress;
    ErrorLabel *m_errors;
    WarningLabel *m_warnings;
};
