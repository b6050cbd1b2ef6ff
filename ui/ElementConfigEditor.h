#pragma once

#include <QWidget>

class Document;
class ScriptPanelHost;

// A panel of the machine's main values, built by a panel function of the configuration
// script on a host widget. The script binds its editors itself; the panel object's
// updateUI() brings them up to date. Each subclass names its function and object.
class ElementConfigEditor : public QWidget
{
    Q_OBJECT
public:
    void createUI();
    void updateConfigUI();

    // A visible exclamation or warning icon of the script's in the panel.
    bool hasExclamation() const;
    bool hasWarning() const;

protected:
    ElementConfigEditor(Document *document, QWidget *parent);

    virtual QString panelFunctionName() const = 0;
    virtual QString panelObjectName() const = 0;

private:
    void callPanelFunction();
    void refresh();
    void scriptFailure(const QString &message) const;

    Document *m_document;
    ScriptPanelHost *m_host;
};

class StatorConfigEditor : public ElementConfigEditor
{
    Q_OBJECT
public:
    explicit StatorConfigEditor(Document *document, QWidget *parent = nullptr);

protected:
    QString panelFunctionName() const override { return QStringLiteral("createStatorUI"); }
    QString panelObjectName() const override { return QStringLiteral("statorUI"); }
};

class RotorConfigEditor : public ElementConfigEditor
{
    Q_OBJECT
public:
    explicit RotorConfigEditor(Document *document, QWidget *parent = nullptr);

protected:
    QString panelFunctionName() const override { return QStringLiteral("createRotorUI"); }
    QString panelObjectName() const override { return QStringLiteral("rotorUI"); }
};

class MeshConfigEditor : public ElementConfigEditor
{
    Q_OBJECT
public:
    explicit MeshConfigEditor(Document *document, QWidget *parent = nullptr);

protected:
    QString panelFunctionName() const override { return QStringLiteral("createMeshUI"); }
    QString panelObjectName() const override { return QStringLiteral("meshUI"); }
};

class WindingConfigEditor : public ElementConfigEditor
{
    Q_OBJECT
public:
    explicit WindingConfigEditor(Document *document, QWidget *parent = nullptr);

protected:
    QString panelFunctionName() const override { return QStringLiteral("createWindingUI"); }
    QString panelObjectName() const override { return QStringLiteral("windingUI"); }
};
