#pragma once

#include <QStringList>

class QWidget;

// Every file dialog of the program goes through here. Where nobody can answer
// (the offscreen platform) the dialog is logged and answered from a list that
// tests fill in advance, or cancelled.
namespace FileDialog {

QStringList getOpenFileNames(QWidget *parent, const QString &caption, const QString &folder, const QString &filter);
QString getSaveFileName(QWidget *parent, const QString &caption, const QString &proposal, const QString &filter);
QString getExistingDirectory(QWidget *parent, const QString &caption, const QString &folder);

// The root of the parent installation, where the program proposes its files; empty
// when no parent installation is known.
QString rootPath();

// The answers of the next headless dialogs, in order; an empty answer cancels.
void answerNextDialogs(const QStringList &answers);

} // namespace FileDialog
