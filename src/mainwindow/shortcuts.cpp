#include "mainwindow/shortcuts.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QShortcut>

Shortcuts::Shortcuts(QWidget *window)
    : QObject(window)
    , m_window(window)
{
    qApp->installEventFilter(this);
}

void Shortcuts::add(const QList<QKeySequence> &keys, const std::function<void()> &command,
                    Repeat repeat)
{
    for (const QKeySequence &key : keys) {
        auto *shortcut = new QShortcut(key, m_window);
        shortcut->setAutoRepeat(repeat == Repeat::WhileHeld);
        connect(shortcut, &QShortcut::activated, this, command);
        m_keys.append(key);
    }
}

// Before a shortcut acts, the focus widget is asked whether it wants the key for itself.
bool Shortcuts::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride)
        return QObject::eventFilter(watched, event);
    if (QApplication::activePopupWidget()) {
        event->accept(); // an open list or menu takes the key, and nothing else does
        return false;
    }
    const auto *focus = qobject_cast<QWidget *>(watched);
    auto *keyEvent = static_cast<QKeyEvent *>(event);
    if (!focus || focus->window() != m_window || !belongsTo(focus, *keyEvent))
        return QObject::eventFilter(watched, event);
    event->accept();
    return true;
}

bool Shortcuts::belongsTo(const QWidget *focus, const QKeyEvent &event) const
{
    if (qobject_cast<const QLineEdit *>(focus) || qobject_cast<const QAbstractSpinBox *>(focus))
        return event.key() != Qt::Key_F1 && event.key() != Qt::Key_F11;
    if (event.key() != Qt::Key_Space)
        return false;
    return qobject_cast<const QAbstractButton *>(focus) || qobject_cast<const QComboBox *>(focus);
}
