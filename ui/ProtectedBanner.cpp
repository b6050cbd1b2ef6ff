#include "ui/ProtectedBanner.h"

#include <QGraphicsBlurEffect>
#include <QResizeEvent>

namespace {

const QString title = QStringLiteral(
    "<p><span style='font-size:11pt; font-weight:600;'>File is protected from viewing</span></p>");

} // namespace

ProtectedBanner::ProtectedBanner(const QImage &picture, bool slave, QWidget *parent)
    : QLabel(parent)
    , m_picture(picture)
    , m_background(new QLabel(this))
    , m_text(new QLabel(this))
{
    setObjectName(QStringLiteral("ProtectedBanner"));
    m_background->setAlignment(Qt::AlignCenter);
    m_background->setGraphicsEffect(new QGraphicsBlurEffect(m_background));
    m_text->setObjectName(QStringLiteral("labelProtected"));
    m_text->setAlignment(Qt::AlignCenter);
    m_text->setMargin(20);
    m_text->setWordWrap(true);
    m_text->setMaximumWidth(700);
    m_text->setStyleSheet(QStringLiteral("color: rgb(96, 96, 96); background-color: rgba(255, 252, 209, 200); "
                                         "border: 1px solid rgb(197, 197, 197); border-radius: 10px;"));
    QString body = title;
    if (slave)
        body += tr("<p>The owner of this file decided not to disclose the design details of the project. You can "
                   "still run any analysis for this project from the <a href='Go back the Zolvane main window'>"
                   "<span style='text-decoration: underline; color:#0000ff;'>Zolvane main window</span></a> and "
                   "view all the results.</p>");
    m_text->setText(QStringLiteral("<html><head/><body>%1</body></html>").arg(body));
    connect(m_text, &QLabel::linkActivated, this, &QLabel::linkActivated);
    fit();
}

void ProtectedBanner::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    fit();
}

void ProtectedBanner::fit()
{
    m_background->setGeometry(rect());
    if (!m_picture.isNull() && !size().isEmpty())
        m_background->setPixmap(
            QPixmap::fromImage(m_picture.scaled(size(), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    m_text->adjustSize();
    m_text->move((width() - m_text->width()) / 2, (height() - m_text->height()) / 2);
}
