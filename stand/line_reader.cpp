#include "stand/line_reader.h"

#include <QSocketNotifier>

#include <cerrno>
#include <unistd.h>

LineReader::LineReader(int file)
    : m_file(file)
    , m_notifier(new QSocketNotifier(file, QSocketNotifier::Read, this))
{
    connect(m_notifier, &QSocketNotifier::activated, this, &LineReader::readSome);
}

void LineReader::readSome()
{
    char buffer[65536];
    const ssize_t count = ::read(m_file, buffer, sizeof buffer);
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count <= 0) {
        m_notifier->setEnabled(false);
        return;
    }
    m_rest.append(buffer, static_cast<int>(count));
    for (int end = m_rest.indexOf('\n'); end >= 0; end = m_rest.indexOf('\n')) {
        const QString text = QString::fromUtf8(m_rest.left(end)).trimmed();
        m_rest.remove(0, end + 1);
        if (!text.isEmpty())
            emit line(text);
    }
}
