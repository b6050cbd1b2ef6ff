#pragma once

#include <QJSValue>
#include <QStringList>

class JSEngine;

// A script's editor panel, built once in a hidden host to learn which variables it
// edits: the object names of its editor widgets. The element that owns the script
// only gets the names; the widgets stay in this layer.
struct ScriptPanelEditors {
    QStringList names;
    // The script's failure, empty when the panel was built.
    QString error;
};

// Calls create(host) in the engine. Widgets without a readable user property with a
// notify signal, and names given twice, are logged and left out.
ScriptPanelEditors scriptPanelEditors(JSEngine &engine, const QJSValue &create);
