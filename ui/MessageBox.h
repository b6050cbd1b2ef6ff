#pragma once

#include <QMessageBox>

// Every message box of the program goes through here. Where nobody can answer
// (the offscreen platform of a headless run) the box is written to the log and
// answered with its default button instead of blocking the process.
namespace MessageBox {

QMessageBox::StandardButton show(QMessageBox::Icon kind, QWidget *parent, const QString &title, const QString &text,
                                 QMessageBox::StandardButtons buttons,
                                 QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);

QMessageBox::StandardButton information(QWidget *parent, const QString &title, const QString &text,
                                        QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);
QMessageBox::StandardButton warning(QWidget *parent, const QString &title, const QString &text,
                                    QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);
QMessageBox::StandardButton critical(QWidget *parent, const QString &title, const QString &text,
                                     QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                     QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);
QMessageBox::StandardButton question(QWidget *parent, const QString &title, const QString &text,
                                     QMessageBox::StandardButtons buttons = QMessageBox::Yes | QMessageBox::No,
                                     QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);

// True when boxes can't be shown to anybody.
bool isHeadless();

// Answers for the next boxes of a headless run, in order, instead of their defaults:
// so that tests can take every branch of a question.
void answerNextBoxes(const QList<QMessageBox::StandardButton> &answers);

} // namespace MessageBox
