#include "features/recording.h"

#include "app/log.h"
#include "features/avi_mender.h"
#include "features/picture_feed.h"
#include "features/unfinished_work.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace {

// From "q" to the signals at which ffmpeg also closes its file: a read from a camera that has
// fallen silent ends by itself before.
constexpr int kPoliteMs = 4000;
constexpr int kSignalMs = 500;    // between them: only the second one ends a read from a camera
constexpr int kClosingMs = 5000;  // from there to the end by force
constexpr int kSlowRounds = 8;    // half a minute for a slow machine that still writes
constexpr int kReportMs = 1500;   // an ffmpeg that cannot go on has ended by then
constexpr int kForceMs = 1000;    // a killed process ends at once
constexpr int kSignals = 2;       // a third one would make ffmpeg leave its file as it is
constexpr int kInterrupted = 255; // exit code of an ffmpeg that finished after a signal

// More than the headers of any container: a file above it holds pictures.
constexpr qint64 kHeaderBytes = 16 * 1024;

// Its messages are read, so they must come in English; file names stay in the user's encoding.
QProcessEnvironment readableEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString all = environment.value(QStringLiteral("LC_ALL"));
    if (!all.isEmpty())
        environment.insert(QStringLiteral("LC_CTYPE"), all);
    environment.remove(QStringLiteral("LC_ALL"));
    environment.insert(QStringLiteral("LC_MESSAGES"), QStringLiteral("C"));
    return environment;
}

} // namespace

Recording::Recording(const QString &command, const QString &path, QObject *parent)
    : QObject(parent)
    , m_command(command)
    , m_path(path)
    , m_previous(path)
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setProcessEnvironment(readableEnvironment());
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &Recording::outputReady);
    connect(&m_process, &QProcess::readyReadStandardError, this, &Recording::errorsReady);
    connect(&m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &Recording::processFinished);
    connect(&m_process, &QProcess::errorOccurred, this, &Recording::processFailed,
            Qt::QueuedConnection);
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &Recording::pressHarder);
    m_report.setSingleShot(true);
    connect(&m_report, &QTimer::timeout, this, [this] { reportFailure(RecordingFailure::GoesOn); });
}

void Recording::setFeed(std::shared_ptr<PictureFeed> feed)
{
    m_feed = std::move(feed);
    m_process.setStandardInputFile(QProcess::nullDevice()); // no pipe for nothing
    m_process.setInput(m_feed->readerEnd());
}

void Recording::start()
{
    QDir().mkpath(QFileInfo(m_path).path());
    QStringList arguments = QProcess::splitCommand(m_command);
    m_nameIsFree = m_previous.setAside();
    if (!m_nameIsFree)
        fail(QStringLiteral("the name is taken: ") + m_path, RecordingFailure::NameTaken);
    if (arguments.isEmpty() || !m_nameIsFree) {
        QMetaObject::invokeMethod(
            this, [this] { end(false); }, Qt::QueuedConnection);
        return;
    }
    const QString program = arguments.takeFirst();
    noteUnfinished(UnfinishedWork::Recording, m_path);
    m_process.start(program, arguments, QIODevice::ReadWrite);
    if (m_feed)
        m_feed->closeReader();
}

void Recording::stop()
{
    if (m_stopping || m_ended)
        return;
    m_stopping = true;
    if (m_feed)
        m_feed->finish();
    else
        m_process.write("q");
    m_sizeSeen = QFileInfo(m_path).size();
    m_patience.start(kPoliteMs);
}

void Recording::checkFeed()
{
    if (!m_feed || !m_feed->isFormatChanged())
        return;
    fail(QStringLiteral("the camera's pictures have another format now"));
    stop();
}

void Recording::pressHarder()
{
    if (m_ended)
        return;
    const qint64 size = QFileInfo(m_path).size();
    const bool isWriting = size != std::exchange(m_sizeSeen, size);
    if (isWriting && ++m_slowRounds <= kSlowRounds) {
        m_patience.start(kPoliteMs);
    } else if (m_signals < kSignals) {
        WriteLog("recording: ffmpeg does not finish by itself");
        signal();
        m_patience.start(m_signals < kSignals ? kSignalMs : kClosingMs);
    } else {
        m_process.kill();
    }
}

void Recording::signal()
{
    ++m_signals;
    m_process.terminate();
}

bool Recording::wait(int timeoutMs)
{
    return m_ended || m_process.waitForFinished(timeoutMs);
}

void Recording::finishNow()
{
    stop();
    if (wait(kPoliteMs))
        return;
    while (m_signals < kSignals) {
        signal();
        if (wait(m_signals < kSignals ? kSignalMs : kClosingMs))
            return;
    }
    m_process.kill();
    wait(kForceMs);
}

void Recording::fail(const QString &why, RecordingFailure::Cause cause)
{
    if (m_failed)
        return;
    m_failed = true;
    if (cause != RecordingFailure::Unknown)
        m_cause = cause;
    WriteLog(("recording failed: " + why).toUtf8().constData());
    m_report.start(kReportMs);
}

void Recording::reportFailure(RecordingFailure::File file)
{
    if (!m_failed || m_reported || (m_stopping && !m_ended))
        return;
    m_reported = true;
    m_report.stop();
    if (m_cause == RecordingFailure::Unknown && file == RecordingFailure::Nothing)
        m_cause = RecordingFailure::StoppedAtOnce;
    if (m_cause == RecordingFailure::Unknown && file == RecordingFailure::Kept)
        m_cause = RecordingFailure::Ended;
    emit failed({m_cause, file});
}

void Recording::readOutput()
{
    const QByteArray output = m_process.readAllStandardOutput();
    qDebug().noquote() << QString::fromUtf8(output);
    m_lineStart += output;
    m_lineStart.replace('\r', '\n'); // the counters overwrite their line
    const int whole = m_lineStart.lastIndexOf('\n') + 1;
    const QList<QByteArray> lines = m_lineStart.left(whole).split('\n');
    m_lineStart.remove(0, whole);
    for (const QByteArray &line : lines)
        judgeLine(line);
}

void Recording::readErrors()
{
    qDebug().noquote() << "-------------error-------------" << m_process.readAllStandardError();
}

void Recording::judgeLine(const QByteArray &line)
{
    if (line.startsWith("frame=") && line.mid(6).trimmed().split(' ').first().toInt() > 0)
        m_anyFrame = true;
    if (const auto cause = failureCause(line); cause != RecordingFailure::Unknown)
        m_cause = cause;
    if (!isAboutOnePicture(line) && reportsError(line, m_path))
        fail(QString::fromUtf8(line));
}

bool Recording::hasPictures(bool clean) const
{
    const qint64 size = QFileInfo(m_path).size();
    return size > kHeaderBytes || (clean && m_anyFrame && size > 0);
}

void Recording::processFinished(int exitCode, QProcess::ExitStatus status)
{
    const bool clean = status == QProcess::NormalExit &&
                       (exitCode == 0 || (m_stopping && exitCode == kInterrupted));
    if (!clean || !m_stopping)
        fail(QStringLiteral("ffmpeg ended, code %1").arg(exitCode));
    end(clean);
}

void Recording::processFailed(QProcess::ProcessError error)
{
    if (error != QProcess::FailedToStart)
        return;
    fail(m_process.errorString(), RecordingFailure::NoProgram);
    end(false);
}

void Recording::end(bool clean)
{
    if (m_ended)
        return;
    m_patience.stop();
    readOutput();
    judgeLine(m_lineStart);
    m_ended = true;
    if (m_feed) {
        m_feed->finish();
        WriteLog(qPrintable(QStringLiteral("recording: %1 pictures, %2 left out")
                                .arg(m_feed->writtenCount())
                                .arg(m_feed->leftOutCount())));
    }
    if (m_nameIsFree && hasPictures(clean)) {
        m_previous.discard();
        if (!clean)
            mendAvi(m_path);
        reportFailure(RecordingFailure::Kept);
        emit finished(m_path);
    } else {
        fail(QStringLiteral("nothing was recorded into ") + m_path);
        if (m_nameIsFree)
            QFile::remove(m_path);
        m_previous.restore();
        reportFailure(RecordingFailure::Nothing);
    }
    forgetUnfinished(UnfinishedWork::Recording, {m_path});
    emit ended();
    deleteLater();
}

bool reportsError(QByteArray line, const QString &path)
{
    return line.replace(QFile::encodeName(path), QByteArray()).contains("error");
}
