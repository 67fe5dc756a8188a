#pragma once

#include <QProcess>

/// A child process that is asked to end (SIGINT) when this program ends in whatever way, also
/// when it is killed, where the system can do that. To be started from the main thread: the end of
/// the starting thread counts as the program's.
class ChildProcess : public QProcess
{
public:
    explicit ChildProcess(QObject *parent = nullptr);

    /// The child reads `file`, an open descriptor, as its standard input, whose end takes the
    /// place of the signal. Before the start.
    void setInput(int file) { m_input = file; }

protected:
    void setupChildProcess() override;

private:
    const qint64 m_program; ///< process ID of this program
    int m_input = -1;
};
