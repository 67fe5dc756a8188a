#pragma once

#include <QProcess>
#include <QStringList>

/// The program pictor-stand without a window, inside the current XDG_RUNTIME_DIR. Ends with the
/// object, at the latest with the test program. One thread.
class StandProcess
{
public:
    /// Starts the stand with `arguments` beside --headless and waits until its devices are
    /// listed.
    explicit StandProcess(const QStringList &arguments = {});

    /// Asks the stand to quit; kills it when it does not.
    ~StandProcess();

    StandProcess(const StandProcess &) = delete;
    StandProcess &operator=(const StandProcess &) = delete;

    bool isReady() const { return m_ready; }

    /// Sends one line ("scene card") and waits up to 5 s for its answer; true for "ok".
    bool command(const QString &line);

    /// The answer to the last command, or what was printed instead of "ready".
    QString answer() const { return m_answer; }

    /// Ends the process at once, as a crash or a pulled cable would.
    void kill();

    qint64 processId() const { return m_process.processId(); }

    /// Folder of the built programs (pictor-stand, pictor-probe, ...).
    static QString binaryFolder();

private:
    bool readLine(int timeoutMs);

    QProcess m_process;
    QString m_answer;
    bool m_ready = false;
};
