#pragma once

#include <QLabel>
#include <QObject>
#include <QTimer>

/// What the window says over the live picture: short messages that go by themselves, a flash of
/// the frame when a capture worked, and a hint while there is no picture. Nothing of it takes the
/// mouse or has to be clicked away. GUI thread.
class PreviewFeedback : public QObject
{
    Q_OBJECT

public:
    enum class Kind { Info, Warning };

    /// `preview` is the widget that is written over; it owns the labels.
    explicit PreviewFeedback(QWidget *preview);

    /// Shows `text` for a few seconds, in place of an earlier message.
    void say(const QString &text, Kind kind = Kind::Info);
    /// The message in sight; empty when there is none.
    QString message() const;

    void clearMessage();

    void flash();

    /// Shown in the middle until it is empty again.
    void setHint(const QString &text);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();

    QWidget *m_preview;
    QLabel *m_message;
    QLabel *m_hint;
    QWidget *m_flash;
    QTimer m_messageTimer;
    QTimer m_flashTimer;
};
