#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>

#include <functional>

class QKeyEvent;
class QWidget;

/// The window's keyboard commands. While a text field is edited its own keys are not theirs, and
/// Return or Escape leaves it; Space belongs to a button or box that was reached with Tab. GUI
/// thread.
class Shortcuts : public QObject
{
    Q_OBJECT

public:
    enum class Repeat { Once, WhileHeld };

    /// `leave` takes the focus away from a field.
    Shortcuts(QWidget *window, std::function<void()> leave);

    /// Runs `command` when one of `keys` is pressed in the window.
    void add(const QList<QKeySequence> &keys, const std::function<void()> &command,
             Repeat repeat = Repeat::Once);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool belongsTo(const QWidget *focus, const QKeyEvent &event) const;
    bool isHeldCapture(const QKeyEvent &event) const;
    void noteRelease(const QKeyEvent &event);

    QWidget *m_window;
    std::function<void()> m_leave;
    QList<QKeySequence> m_keys;
    int m_released = 0;     ///< key that was released last
    ulong m_releasedAt = 0; ///< its time, of the system's events
};
