#include "ui/GlassWidget.h"

#include <QApplication>
#include <QEvent>
#include <QGraphicsBlurEffect>
#include <QGraphicsOpacityEffect>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QPainter>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/Controls/ProgressIndicator.h"

namespace {

QString framed(const QString &text)
{
    return text.isEmpty() ? QString()
                          : QStringLiteral("<table cellpadding='3'><tr><td align=center valign=middle>"
                                           "<table cellpadding='3'><tr><td align=center valign=middle>"
                                           "<font><b>%1</b></font></td></tr></table>")
                                .arg(text);
}

QImage blurred(const QImage &image, double radius)
{
    QGraphicsScene scene;
    QGraphicsPixmapItem item(QPixmap::fromImage(image));
    auto *blur = new QGraphicsBlurEffect;
    blur->setBlurRadius(radius);
    item.setGraphicsEffect(blur);
    scene.addItem(&item);
    QImage result(image.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    scene.render(&painter, QRectF(), QRectF(0, 0, image.width(), image.height()));
    painter.end();
    scene.removeItem(&item);
    return result;
}

} // namespace

GlassWidget::GlassWidget(const QString &message, QWidget *parent, bool spinning)
    : QLabel(parent)
    , m_status(new QLabel(this))
    , m_spinner(new ProgressIndicator(this))
{
    setObjectName(QStringLiteral("GlassWidget"));
    setAlignment(Qt::AlignCenter);
    m_message = makeText(150);
    m_note = makeText(150);
    m_status->setObjectName(QStringLiteral("labelStatus"));
    m_status->setWordWrap(false);
    m_status->setStyleSheet(QStringLiteral("color: #606060; background: transparent;"));
    m_spinner->setObjectName(QStringLiteral("progressIndicator"));
    m_spinner->setColor(QColor(128, 128, 128));
    m_spinner->setAnimationDelay(100);
    m_spinner->setFixedSize(48, 48);

    m_layout = new QVBoxLayout(this);
    m_layout->addStretch();
    m_layout->addWidget(m_message.label);
    m_layout->addWidget(m_spinner, 0, Qt::AlignHCenter);
    m_layout->addWidget(m_note.label);
    m_layout->addStretch();
    m_layout->addWidget(m_status, 0, Qt::AlignHCenter | Qt::AlignBottom);

    m_message.plain = message;
    m_message.label->setText(framed(message));
    m_spinner->setVisible(!message.isEmpty());
    if (spinning)
        m_spinner->startAnimation();

    move(0, 0);
    fitToParent();
    show();
    setFocus();
    parent->installEventFilter(this);
}

GlassWidget::~GlassWidget()
{
    if (parentWidget())
        parentWidget()->removeEventFilter(this);
}

GlassWidget::Text GlassWidget::makeText(int pointSizeFactorPercent)
{
    Text text;
    text.label = new QLabel(this);
    text.label->setWordWrap(false);
    text.label->setAlignment(Qt::AlignCenter);
    text.label->setStyleSheet(QStringLiteral("color: #606060; background: transparent;"));
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * pointSizeFactorPercent / 100.0);
    text.label->setFont(font);
    text.effect = new QGraphicsOpacityEffect(text.label);
    text.effect->setOpacity(1.0);
    text.label->setGraphicsEffect(text.effect);
    return text;
}

QString GlassWidget::message() const
{
    return m_message.plain;
}

QString GlassWidget::note() const
{
    return m_note.plain;
}

QString GlassWidget::status() const
{
    return m_status->text();
}

void GlassWidget::setMessage(const QString &message, const QString &note)
{
    m_status->clear();
    changeTexts({{&m_message, message}, {&m_note, note}});
}

void GlassWidget::setNote(const QString &note)
{
    changeTexts({{&m_note, note}});
}

void GlassWidget::setStatus(const QString &status)
{
    m_status->setText(status);
}

QPushButton *GlassWidget::addButton(const QString &text)
{
    auto *button = new QPushButton(text, this);
    // Under the note, above the stretch that keeps the texts in the middle.
    m_layout->insertWidget(m_layout->indexOf(m_note.label) + 1, button, 0, Qt::AlignHCenter);
    return button;
}

void GlassWidget::changeTexts(const QList<QPair<Text *, QString>> &changes)
{
    for (const auto &change : changes) {
        Text *text = change.first;
        if (text->plain == change.second)
            continue;
        text->plain = change.second;
        text->label->setText(framed(change.second));
        // The new text fades in without a local event loop: messages may come faster
        // than any fade, and none of them may wait for it.
        if (!change.second.isEmpty())
            fadeIn(text);
    }
    m_spinner->setVisible(!m_message.plain.isEmpty() || !m_note.plain.isEmpty());
}

void GlassWidget::fadeIn(Text *text)
{
    auto *animation = new QPropertyAnimation(text->effect, "opacity", this);
    animation->setDuration(500);
    animation->setStartValue(0.0);
    animation->setEndValue(1.0);
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

bool GlassWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && (event->type() == QEvent::Resize || event->type() == QEvent::WindowStateChange))
        fitToParent();
    return QLabel::eventFilter(watched, event);
}

void GlassWidget::fitToParent()
{
    resize(parentWidget()->size());
    renderBackground();
}

void GlassWidget::renderBackground()
{
    QWidget *parent = parentWidget();
    if (parent->size().isEmpty())
        return;
    // The parent as it looks without the pane.
    hide();
    QImage image(parent->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    parent->render(&image);
    show();
    image = blurred(image, 5.0);
    QPainter painter(&image);
    painter.fillRect(image.rect(), QBrush(QColor(0, 0, 0, 8), Qt::Dense4Pattern));
    painter.fillRect(image.rect(), QColor(0, 0, 0, 16));
    painter.end();
    setPixmap(QPixmap::fromImage(image));
}
