#include "support/stand_process.h"

#include <QElapsedTimer>

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
    QElapsedTimer timer;
    timer.start();
    m_answer.clear();
    while (!m_output.contains('\n')) {
        const int left = timeoutMs - static_cast<int>(timer.elapsed());
        const bool more =
            left > 0 && (m_process.bytesAvailable() > 0 || m_process.waitForReadyRead(left));
        if (!more)
            return false;
        m_output += m_process.readAll();
    }
    const int end = m_output.indexOf('\n');
    m_answer = QString::fromUtf8(m_output.left(end)).trimmed();
    m_output.remove(0, end + 1);
    return true;
}
