#pragma once

#include <QLabel>

// The bars along a view that say what is wrong with what it shows (red) or what
// deserves a look (yellow); their links are the owner's to follow.
class ErrorLabel : public QLabel
{
    Q_OBJECT
public:
    explicit ErrorLabel(QWidget *parent = nullptr);
};

class WarningLabel : public QLabel
{
    Q_OBJECT
public:
    explicit WarningLabel(QWidget *parent = nullptr);
};
