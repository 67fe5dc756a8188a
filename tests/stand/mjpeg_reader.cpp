#include "stand/mjpeg_reader.h"

#include <QElapsedTimer>
#include <QFile>

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

MjpegReader::MjpegReader(const QString &socketPath)
    : m_file(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    const QByteArray path = QFile::encodeName(socketPath);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    m_isAtEnd = ::connect(m_file, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0;
}

MjpegReader::~MjpegReader()
{
    ::close(m_file);
}

QByteArray MjpegReader::nextJpeg(int timeoutMs)
{
    static const QByteArray kEnd("\xff\xd9", 2);
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        const int end = m_bytes.indexOf(kEnd);
        if (end >= 0) {
            const QByteArray jpeg = m_bytes.left(end + kEnd.size());
            m_bytes.remove(0, jpeg.size());
            return jpeg;
        }
        const int left = timeoutMs - static_cast<int>(timer.elapsed());
        if (left <= 0 || !readSome(left))
            return {};
    }
}

cv::Mat MjpegReader::nextPicture()
{
    const QByteArray jpeg = nextJpeg();
    if (jpeg.isEmpty())
        return {};
    return cv::imdecode(std::vector<uchar>(jpeg.begin(), jpeg.end()), cv::IMREAD_GRAYSCALE);
}

bool MjpegReader::waitForEnd(int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!m_isAtEnd && timer.elapsed() < timeoutMs)
        readSome(timeoutMs);
    return m_isAtEnd;
}

bool MjpegReader::readSome(int timeoutMs)
{
    pollfd file{m_file, POLLIN, 0};
    char buffer[65536];
    if (m_isAtEnd || ::poll(&file, 1, timeoutMs) <= 0)
        return false;
    const ssize_t count = ::read(m_file, buffer, sizeof buffer);
    m_isAtEnd = count <= 0;
    m_bytes.append(buffer, std::max<int>(0, static_cast<int>(count)));
    return !m_isAtEnd;
}
