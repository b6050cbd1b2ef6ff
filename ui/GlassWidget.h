#pragma once

#include <QLabel>

class ProgressIndicator;
class QGraphicsOpacityEffect;
class QPushButton;
class QVBoxLayout;

// A frosted pane over a widget while long work goes on: a message and a note in the
// middle, a status at the bottom, and a spinner. A new text fades in.
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
    // A button under the note, for the one thing the user may do meanwhile.
    QPushButton *addButton(const QString &text);

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
    void fadeIn(Text *text);
    void changeTexts(const QList<QPair<Text *, QString>> &changes);

    Text m_message;
    Text m_note;
    QLabel *m_status;
    QVBoxLayout *m_layout;
    ProgressIndicator *m_spinner;
};
