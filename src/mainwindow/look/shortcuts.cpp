#include "mainwindow/look/shortcuts.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QShortcut>

#include <utility>

namespace {

constexpr ulong kPairMs = 2; // between the two events of a repeated key; no finger is as quick

// A field that is read only merely shows: it swallows no key.
bool isEdited(const QWidget *focus)
{
    const auto *line = qobject_cast<const QLineEdit *>(focus);
    return line ? !line->isReadOnly() : qobject_cast<const QAbstractSpinBox *>(focus) != nullptr;
}

bool leavesField(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
           event.key() == Qt::Key_Escape;
}

// What a field does with a key: text and its editing; the window's own commands pass.
bool isForText(const QKeyEvent &event)
{
    if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F35)
        return false;
    if (!(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)))
        return true;
    switch (event.key()) {
    case Qt::Key_A:
    case Qt::Key_C:
    case Qt::Key_V:
    case Qt::Key_X:
    case Qt::Key_Y:
    case Qt::Key_Z:
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
    case Qt::Key_Insert:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
        return true;
    default: // AltGr may be told as both
        return (event.modifiers() & Qt::ControlModifier) && (event.modifiers() & Qt::AltModifier);
    }
}

} // namespace

Shortcuts::Shortcuts(QWidget *window, std::function<void()> leave)
    : QObject(window)
    , m_window(window)
    , m_leave(std::move(leave))
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
    if (event->type() == QEvent::KeyRelease)
        noteRelease(*static_cast<QKeyEvent *>(event));
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    if (QApplication::activePopupWidget()) {
        event->accept(); // an open list or menu takes the key, and nothing else does
        return false;
    }
    auto *focus = qobject_cast<QWidget *>(watched);
    auto *keyEvent = static_cast<QKeyEvent *>(event);
    if (!focus || focus->window() != m_window)
        return QObject::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress) {
        const bool leaves = isEdited(focus) && leavesField(*keyEvent);
        if (leaves)
            m_leave();
        return leaves;
    }
    if (!belongsTo(focus, *keyEvent) && !isHeldCapture(*keyEvent))
        return QObject::eventFilter(watched, event);
    event->accept();
    return true;
}

void Shortcuts::noteRelease(const QKeyEvent &event)
{
    if (event.isAutoRepeat())
        return;
    m_released = event.key();
    m_releasedAt = event.timestamp();
}

// X11 repeats a held key as releases and presses of one time. While the window is busy Qt cannot
// see both and takes the press for a new one: each would be a capture.
bool Shortcuts::isHeldCapture(const QKeyEvent &event) const
{
    const bool captures = event.key() == Qt::Key_Space || event.key() == Qt::Key_Return ||
                          event.key() == Qt::Key_Enter;
    const bool isPair = event.key() == m_released && event.timestamp() != 0 &&
                        event.timestamp() - m_releasedAt <= kPairMs;
    return captures && (event.isAutoRepeat() || isPair);
}

bool Shortcuts::belongsTo(const QWidget *focus, const QKeyEvent &event) const
{
    if (isEdited(focus))
        return isForText(event);
    if (event.key() != Qt::Key_Space)
        return false;
    return qobject_cast<const QAbstractButton *>(focus) || qobject_cast<const QComboBox *>(focus);
}
