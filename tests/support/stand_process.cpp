#include "support/stand_process.h"

#include <QDeadlineTimer>

namespace {

constexpr int kStartTimeoutMs = 20000;
constexpr int kAnswerTimeoutMs = 5000;
constexpr int kQuitTimeoutMs = 3000;

} // namespace

StandProcess::StandProcess(const QStringList &arguments)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(binaryFolder() + QStringLiteral("/pictor-stand"),
                    QStringList{QStringLiteral("--headless"), QStringLiteral("--die-with-parent")} +
                        arguments);
    m_ready = readLine(kStartTimeoutMs) && m_answer == QLatin1String("ready");
}

StandProcess::~StandProcess()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.write("quit\n");
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(kQuitTimeoutMs))
        kill();
}

bool StandProcess::command(const QString &line)
{
    m_process.write(line.toUtf8() + '\n');
    return readLine(kAnswerTimeoutMs) && m_answer == QLatin1String("ok");
}

void StandProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished(kQuitTimeoutMs);
}

QString StandProcess::binaryFolder()
{
    return QStringLiteral(PICTOR_BINARY_FOLDER);
}

bool StandProcess::readLine(int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    m_answer.clear();
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            return false;
    }
    m_answer = QString::fromUtf8(m_process.readLine()).trimmed();
    return true;
}
