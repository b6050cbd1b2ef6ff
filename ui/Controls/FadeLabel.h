#pragma once

#include <QLabel>

// A note laid over a view: larger than the text around it, hidden until its owner
// shows it, and selectable so that a message can be copied.
class FadeLabel : public QLabel
{
    Q_OBJECT
public:
    explicit FadeLabel(QWidget *parent = nullptr);
};
