#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>

#include <functional>

class QKeyEvent;
class QWidget;

/// The window's keyboard commands. They rest while a text field has the focus, and Space belongs
/// to a button or box that was reached with Tab. GUI thread.
class Shortcuts : public QObject
{
    Q_OBJECT

public:
    enum class Repeat { Once, WhileHeld };

    explicit Shortcuts(QWidget *window);

    /// Runs `command` when one of `keys` is pressed in the window.
    void add(const QList<QKeySequence> &keys, const std::function<void()> &command,
             Repeat repeat = Repeat::Once);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool belongsTo(const QWidget *focus, const QKeyEvent &event) const;

    QWidget *m_window;
    QList<QKeySequence> m_keys;
};
