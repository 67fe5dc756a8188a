#include "mainwindow/preview/preview_feedback.h"

#include <QAccessible>
#include <QAccessibleEvent>
#include <QEvent>
#include <QPainter>

namespace {

constexpr int kInfoMs = 2500;
constexpr int kWarningMs = 7000;
constexpr int kFlashMs = 180;
constexpr int kEdge = 16; ///< distance of a message from the preview's edges, pixels

/// A bright frame along the edges of its parent.
class FlashFrame : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        constexpr int width = 6;
        QPainter painter(this);
        painter.fillRect(rect(), QColor(255, 255, 255, 60));
        painter.setPen(QPen(QColor(255, 255, 255), width));
        const int inset = width / 2;
        painter.drawRect(rect().adjusted(inset, inset, -inset, -inset));
    }
};

QString messageStyle(PreviewFeedback::Kind kind)
{
    const QString bar = kind == PreviewFeedback::Kind::Warning ? QStringLiteral("#f2a63b")
                                                               : QStringLiteral("#35b8e0");
    return QStringLiteral("QLabel{background-color:rgba(24,28,32,235);color:#ffffff;"
                          "border-left:4px solid %1;border-radius:4px;padding:10px 14px;}")
        .arg(bar);
}

} // namespace

PreviewFeedback::PreviewFeedback(QWidget *preview)
    : QObject(preview)
    , m_preview(preview)
    , m_message(new QLabel(preview))
    , m_hint(new QLabel(preview))
    , m_flash(new FlashFrame(preview))
{
    m_message->setObjectName(QStringLiteral("messageLabel"));
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);
    m_hint->setObjectName(QStringLiteral("hintLabel"));
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    for (QWidget *widget :
         {static_cast<QWidget *>(m_message), static_cast<QWidget *>(m_hint), m_flash}) {
        widget->setAttribute(Qt::WA_TransparentForMouseEvents);
        widget->hide();
    }
    m_messageTimer.setSingleShot(true);
    m_flashTimer.setSingleShot(true);
    connect(&m_messageTimer, &QTimer::timeout, m_message, &QWidget::hide);
    connect(&m_flashTimer, &QTimer::timeout, m_flash, &QWidget::hide);
    preview->installEventFilter(this);
}

void PreviewFeedback::say(const QString &text, Kind kind)
{
    m_message->setStyleSheet(messageStyle(kind));
    m_message->setText(text);
    m_message->setAccessibleName(text);
    place();
    m_message->show();
    m_message->raise();
    m_messageTimer.start(kind == Kind::Warning ? kWarningMs : kInfoMs);
    QAccessibleEvent alert(m_message, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QString PreviewFeedback::message() const
{
    return m_message->isHidden() ? QString() : m_message->text();
}

void PreviewFeedback::clearMessage()
{
    m_messageTimer.stop();
    m_message->hide();
}

void PreviewFeedback::flash()
{
    place();
    m_flash->show();
    m_flash->raise();
    m_flashTimer.start(kFlashMs);
}

void PreviewFeedback::setHint(const QString &text)
{
    if (text == m_hint->text())
        return;
    m_hint->setText(text);
    m_hint->setVisible(!text.isEmpty());
    place();
}

bool PreviewFeedback::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        place();
    return QObject::eventFilter(watched, event);
}

void PreviewFeedback::place()
{
    const QRect area = m_preview->rect();
    m_flash->setGeometry(area);
    m_hint->setGeometry(area.adjusted(kEdge, kEdge, -kEdge, -kEdge));
    const int widest = qMax(area.width() - 2 * kEdge, 1);
    const int width =
        qMin(widest, m_message->fontMetrics().horizontalAdvance(m_message->text()) + 40);
    const int height = m_message->heightForWidth(width);
    m_message->setGeometry((area.width() - width) / 2, area.height() - height - kEdge, width,
                           height);
}
