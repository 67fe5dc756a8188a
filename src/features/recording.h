#pragma once

#include "features/recording_failure.h"
#include "features/set_aside_file.h"
#include "platform/child_process.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

class PictureFeed;

/// One run of ffmpeg that records into one file, from the start to the closed file. Deletes
/// itself when it has ended. GUI thread.
class Recording : public QObject
{
    Q_OBJECT

public:
    Recording(const QString &command, const QString &path, QObject *parent);

    /// ffmpeg receives its pictures from `feed`, whose end tells it to finish. Before the start.
    void setFeed(std::shared_ptr<PictureFeed> feed);

    /// What goes wrong from here on is told by `failed`, never from inside this call.
    void start();

    /// Asks ffmpeg to finish. When its file does not grow any more and it still runs, more firmly,
    /// in the end by force.
    void stop();

    /// Ends, as failed, a recording whose feed cannot go on.
    void checkFeed();

    /// `stop`, and waits through all its measures, 11 seconds at most.
    void finishNow();

    QString path() const { return m_path; }

    /// Notes a failure unless there was one. It is reported with the end, when it is known what
    /// became of the file, or a little later when ffmpeg goes on. `why` goes to the log.
    void fail(const QString &why, RecordingFailure::Cause cause = RecordingFailure::Unknown);

    /// Reads what ffmpeg printed; a line that speaks of an error is a failure, unless
    /// it is about one damaged picture.
    void readOutput();

    void readErrors();

signals:
    void outputReady();
    void errorsReady();
    void failed(const RecordingFailure &failure); ///< at most once
    void finished(const QString &path); ///< ffmpeg has ended and left a file worth keeping
    void ended();                       ///< the last signal

private:
    bool wait(int timeoutMs);
    void processFinished(int exitCode, QProcess::ExitStatus status);
    void processFailed(QProcess::ProcessError error);
    void end(bool clean);
    void reportFailure(RecordingFailure::File file);
    void judgeLine(const QByteArray &line);
    bool hasPictures(bool clean) const;
    void pressHarder();
    void signal();

    const QString m_command;
    const QString m_path;
    SetAsideFile m_previous; ///< the file that had the name before
    ChildProcess m_process;
    std::shared_ptr<PictureFeed> m_feed; ///< null when ffmpeg opens the camera itself
    QTimer m_patience;                   ///< runs from a stop to the next firmer measure
    QTimer m_report;                     ///< runs from a failure to its report while ffmpeg goes on
    qint64 m_sizeSeen = 0;               ///< of the file, when the timer was started
    int m_slowRounds = 0;                ///< of `m_patience` in which the file still grew
    int m_signals = 0;                   ///< sent to make ffmpeg finish
    QByteArray m_lineStart;              ///< printed, but not yet a whole line
    bool m_nameIsFree = false;           ///< no file but the recording's has its name
    bool m_anyFrame = false;
    bool m_stopping = false;
    bool m_failed = false;
    bool m_reported = false;
    RecordingFailure::Cause m_cause = RecordingFailure::Unknown;
    bool m_ended = false;
};

/// True when a line of ffmpeg's output speaks of an error; the recording's own path, in which the
/// word may occur, does not count.
bool reportsError(QByteArray line, const QString &path);
