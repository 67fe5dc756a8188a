#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QString>
#include <QTimer>

#include <functional>

/// One running program for each settings file: two would replace each other's files, settings and
/// recordings. GUI thread.
class SingleInstance
{
public:
    enum class Role {
        First,        ///< this process is the one, also where the lock cannot be made
        HandedOver,   ///< another one runs and has come to the front: end
        NotAnswering, ///< another one runs on this machine and does not answer: tell, and end
        /// Another one runs on another machine: tell, and write no settings. One that has given no
        /// sign of life for an hour is gone: it was killed, and the machine renamed since.
        Elsewhere
    };

    /// `settings` is the settings file; the lock lies beside it until this object goes.
    explicit SingleInstance(const QString &settings);

    /// Finds the role. Asks a running instance to come to the front for a few seconds at most: it
    /// may be just starting.
    Role take();

    /// Called in the first instance whenever another one was started.
    void setWake(std::function<void()> wake) { m_wake = std::move(wake); }

    const QString &otherMachine() const { return m_otherMachine; } ///< after Elsewhere

private:
    Role tryToTake();
    void listen();
    bool wakeOther() const;
    bool isForgotten() const;
    void showLife() const;

    QString m_socket;
    QString m_lockPath;
    QLockFile m_lock;
    QTimer m_life;
    QLocalServer m_server;
    std::function<void()> m_wake;
    QString m_otherMachine;
};
