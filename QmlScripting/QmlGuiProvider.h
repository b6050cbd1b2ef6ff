#pragma once

#include <QObject>
#include <QString>

class JSEngine;
class QmlPixmap;

// The object scripts reach as `QtGui`.
class QmlGuiProvider : public QObject
{
    Q_OBJECT
public:
    explicit QmlGuiProvider(QObject *parent = nullptr);

    // Installs the one provider of the engine as `QtGui`, with the script function QPixmap.
    static void initialize(JSEngine *engine);

public slots:
    // A new holder without parent, so that the engine owns it. The path is taken as it
    // is: a resource (":/exclamation.png") or a file.
    QmlPixmap *createQPixmap(const QString &path);
};
