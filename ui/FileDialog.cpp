#include "ui/FileDialog.h"

#include <QDebug>
#include <QCoreApplication>
#include <QFileDialog>
#include <QSettings>

#include "ui/MessageBox.h"

namespace FileDialog {

namespace {

QStringList &headlessAnswers()
{
    static QStringList answers;
    return answers;
}

QString headlessAnswer(const QString &caption, const QString &proposal)
{
    const QString answer = headlessAnswers().isEmpty() ? QString() : headlessAnswers().takeFirst();
    qInfo().noquote() << "FileDialog:" << caption << proposal << "answered:" << answer;
    return answer;
}

} // namespace

QString rootPath()
{
    return QSettings(QCoreApplication::organizationName(), QStringLiteral("Zolvane"))
        .value(QStringLiteral("RootPath"))
        .toString();
}

void answerNextDialogs(const QStringList &answers)
{
    headlessAnswers() = answers;
}

QStringList getOpenFileNames(QWidget *parent, const QString &caption, const QString &folder, const QString &filter)
{
    if (MessageBox::isHeadless()) {
        const QString answer = headlessAnswer(caption, folder);
        return answer.isEmpty() ? QStringList() : QStringList{answer};
    }
    return QFileDialog::getOpenFileNames(parent, caption, folder, filter);
}

QString getSaveFileName(QWidget *parent, const QString &caption, const QString &proposal, const QString &filter)
{
    if (MessageBox::isHeadless())
        return headlessAnswer(caption, proposal);
    return QFileDialog::getSaveFileName(parent, caption, proposal, filter);
}

QString getExistingDirectory(QWidget *parent, const QString &caption, const QString &folder)
{
    if (MessageBox::isHeadless())
        return headlessAnswer(caption, folder);
    return QFileDialog::getExistingDirectory(parent, caption, folder);
}

} // namespace FileDialog
