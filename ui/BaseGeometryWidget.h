#pragma once

#include <QWidget>

#include "document/Document.h"

class GeometrySourceWidget;
class MotorElement;
class QToolButton;
class ScriptDescribeList;
class ScriptPanelHost;

// The editor of a stator's or rotor's geometry: the element's script builds its panel
// on a host widget, and each change in the panel goes to the script's variable through
// the undo stack. Undo and redo come back to the panel through scriptPropertyChanged.
class BaseGeometryWidget : public QWidget
{
    Q_OBJECT
public:
    MotorElement *element() const { return m_element; }

public slots:
    void widgetVariableChanged();
    void scriptPropertyChanged(const QString &name, const QVariant &value);

protected:
    // What stator and rotor say in their own words.
    struct Texts {
        QString title;
        QString edit;
        QString editToolTip;
        QString exitEdit;
        QString hint;
        QString scriptCommand;
        QString hideHintKey;
        QString panelFunction;
        QString panelObject;
        const char *noUserProperty;
        const char *editorNotFound;
        const char *editorsMultiplied;
    };

    // The other element's catalogue judges which combinations of scripts are allowed.
    BaseGeometryWidget(MotorElement *element, Document::Mode editMode, const ScriptDescribeList &catalogue,
                       const MotorElement *otherElement, const ScriptDescribeList &otherCatalogue,
                       const Texts &texts, QWidget *parent);

    void recreateUI();
    void updateUI();

private:
    void createForm();
    // False, with the message logged and on the console, when the panel function fails.
    bool callPanelFunction();
    // The named editors of the panel, each bound to widgetVariableChanged.
    int bindEditors();
    void refresh();
    bool canEdit() const;
    void chooseScript(const QString &script);
    void toggleEditMode();
    void showGuide();
    void scriptFailure(const QString &message) const;

    MotorElement *m_element;
    Document *m_document;
    Document::Mode m_editMode;
    const ScriptDescribeList &m_catalogue;
    const MotorElement *m_otherElement;
    const ScriptDescribeList &m_otherCatalogue;
    Texts m_texts;
    bool m_hasEditors = false;
    GeometrySourceWidget *m_source = nullptr;
    ScriptPanelHost *m_host = nullptr;
    QToolButton *m_buttonEdit = nullptr;
    QToolButton *m_buttonGuide = nullptr;
    QWidget *m_hint = nullptr;
};
