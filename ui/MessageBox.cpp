#include "ui/MessageBox.h"

#include <QDebug>
#include <QGuiApplication>

namespace MessageBox {

namespace {

QList<QMessageBox::StandardButton> &headlessAnswers()
{
    static QList<QMessageBox::StandardButton> answers;
    return answers;
}

// The button a user who just presses Enter would get.
QMessageBox::StandardButton defaultOf(QMessageBox::StandardButtons buttons,
                                      QMessageBox::StandardButton defaultButton)
{
    if (defaultButton != QMessageBox::NoButton)
        return defaultButton;
    for (uint bit = QMessageBox::FirstButton; bit <= QMessageBox::LastButton; bit <<= 1) {
        if (buttons.testFlag(QMessageBox::StandardButton(bit)))
            return QMessageBox::StandardButton(bit);
    }
    return QMessageBox::NoButton;
}

void logBox(QMessageBox::Icon kind, const QString &text)
{
    switch (kind) {
    case QMessageBox::Warning:
        qWarning().noquote() << "MessageBox warning:" << text;
        break;
    case QMessageBox::Critical:
        qCritical().noquote() << "MessageBox critical:" << text;
        break;
    case QMessageBox::Question:
        qInfo().noquote() << "MessageBox question:" << text;
        break;
    case QMessageBox::Information:
    case QMessageBox::NoIcon:
        qInfo().noquote() << "MessageBox information:" << text;
        break;
    }
}

} // namespace

bool isHeadless()
{
    return QGuiApplication::platformName() == QLatin1String("offscreen");
}

void answerNextBoxes(const QList<QMessageBox::StandardButton> &answers)
{
    headlessAnswers() = answers;
}

QMessageBox::StandardButton show(QMessageBox::Icon kind, QWidget *parent, const QString &title, const QString &text,
                                 QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton)
{
    if (isHeadless()) {
        logBox(kind, text);
        if (!headlessAnswers().isEmpty())
            return headlessAnswers().takeFirst();
        return defaultOf(buttons, defaultButton);
    }
    QMessageBox box(kind, title, text, buttons, parent);
    box.setDefaultButton(defaultButton);
    const int result = box.exec();
    return QMessageBox::StandardButton(result);
}

QMessageBox::StandardButton information(QWidget *parent, const QString &title, const QString &text,
                                        QMessageBox::StandardButtons buttons,
                                        QMessageBox::StandardButton defaultButton)
{
    return show(QMessageBox::Information, parent, title, text, buttons, defaultButton);
}

QMessageBox::StandardButton warning(QWidget *parent, const QString &title, const QString &text,
                                    QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton)
{
    return show(QMessageBox::Warning, parent, title, text, buttons, defaultButton);
}

QMessageBox::StandardButton critical(QWidget *parent, const QString &title, const QString &text,
                                     QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton)
{
    return show(QMessageBox::Critical, parent, title, text, buttons, defaultButton);
}

QMessageBox::StandardButton question(QWidget *parent, const QString &title, const QString &text,
                                     QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton)
{
    return show(QMessageBox::Question, parent, title, text, buttons, defaultButton);
}

} // namespace MessageBox
