#pragma once

#include <QLabel>

class ProgressIndicator;
class QGraphicsOpacityEffect;

// A frosted pane over a widget while long work goes on: a message and a note in the
// middle, a status at the bottom, and a spinner. Changing a text fades the old one out
// and the new one in, in local event loops: callers must expect events meanwhile.
class GlassWidget : public QLabel
{
    Q_OBJECT
public:
    GlassWidget(const QString &message, QWidget *parent, bool spinning = true);
    ~GlassWidget() override;

    QString message() const;
    QString note() const;
    QString status() const;
    ProgressIndicator *spinner() const { return m_spinner; }

    void setMessage(const QString &message, const QString &note);
    void setNote(const QString &note);
    void setStatus(const QString &status);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Text
    {
        QLabel *label = nullptr;
        QGraphicsOpacityEffect *effect = nullptr;
        QString plain;
    };

    Text makeText(int pointSizeFactorPercent);
    void fitToParent();
    void renderBackground();
    void fade(const QList<Text *> &texts, double from, double to, int milliseconds);
    void changeTexts(const QList<QPair<Text *, QString>> &changes);

    Text m_message;
    Text m_note;
    QLabel *m_status;
    ProgressIndicator *m_spinner;
};
