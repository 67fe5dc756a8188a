#pragma once

#include "features/set_aside_file.h"
#include "platform/child_process.h"

#include <QObject>
#include <QString>
#include <QTimer>

/// One run of ffmpeg that records into one file, from the start to the closed file. Deletes
/// itself when it has ended. GUI thread.
class Recording : public QObject
{
    Q_OBJECT

public:
    Recording(const QString &command, const QString &path, QObject *parent);

    QString path() const { return m_path; }

    void start();

    /// Asks ffmpeg to finish: at first politely, then by signal, at last by force.
    void stop();

    /// Waits for the end and handles it; false when it did not come in time.
    bool wait(int timeoutMs);

    /// Reports a failure unless this recording has reported one.
    void fail(const QString &why);

    /// Reads and judges what ffmpeg printed.
    void readOutput();
    void readErrors();

signals:
    void failed();                      ///< at most once
    void finished(const QString &path); ///< ffmpeg has ended and left a file worth keeping
    void ended();                       ///< the last signal

private:
    void end(bool clean);
    void pressHarder();

    const QString m_command;
    const QString m_path;
    SetAsideFile m_previous; ///< the file that had the name before
    ChildProcess m_process;
    QTimer m_patience; ///< runs from a stop to the next harder measure
    QByteArray m_tail; ///< end of the output seen so far, for words cut in two
    bool m_stopping = false;
    bool m_failed = false;
    bool m_ended = false;
};

/// True when ffmpeg's output speaks of an error; the recording's own path in it does not count.
bool reportsError(QByteArray output, const QString &path);
