#pragma once

#include <QImage>
#include <QLabel>

// What a protected file shows instead of its design: its picture, blurred, and a note
// that its owner keeps the design to themselves.
class ProtectedBanner : public QLabel
{
    Q_OBJECT
public:
    ProtectedBanner(const QImage &picture, bool slave, QWidget *parent = nullptr);

    QLabel *textLabel() const { return m_text; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void fit();

    QImage m_picture;
    QLabel *m_background;
    QLabel *m_text;
};
