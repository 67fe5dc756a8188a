#include "stand/button_line.h"

#include <QFile>
#include <QSocketNotifier>
#include <QStringList>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

struct Button
{
    const char *name;
    uchar code;
};

const Button kButtons[] = {{"capture", 0xe4}, {"rotate-left", 0xec}, {"rotate-right", 0xee},
                           {"zoom-in", 0xe0}, {"zoom-out", 0xe2},    {"true-size", 0xea},
                           {"fit", 0xe8},     {"restart", 0xe6}};

// A terminal that passes every byte on unchanged, in packets as they are written.
bool makeRaw(const char *device)
{
    const int slave = ::open(device, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (slave < 0)
        return false;
    termios settings = {};
    const bool ok = ::tcgetattr(slave, &settings) == 0;
    ::cfmakeraw(&settings);
    const bool isSet = ok && ::tcsetattr(slave, TCSANOW, &settings) == 0;
    ::close(slave);
    return isSet;
}

} // namespace

QStringList ButtonLine::buttonNames()
{
    QStringList names;
    for (const Button &button : kButtons)
        names << QLatin1String(button.name);
    return names;
}

QByteArray ButtonLine::buttonFrame(const QString &name)
{
    const auto button = std::find_if(std::begin(kButtons), std::end(kButtons),
                                     [&](const auto &b) { return name == QLatin1String(b.name); });
    if (button == std::end(kButtons))
        return {};
    QByteArray frame = QByteArray::fromHex("ffaac58100004c");
    frame[4] = static_cast<char>(button->code);
    frame[5] = static_cast<char>(0xff - button->code);
    return frame;
}

ButtonLine::ButtonLine(const QString &link)
    : m_link(link)
{
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (m_master < 0)
        return;
    const bool ok = ::grantpt(m_master) == 0 && ::unlockpt(m_master) == 0;
    const char *device = ok ? ::ptsname(m_master) : nullptr;
    QFile::remove(m_link);
    if (!device || !makeRaw(device) || !QFile::link(QFile::decodeName(device), m_link)) {
        ::close(m_master);
        m_master = -1;
        return;
    }
    m_writable = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Write);
    m_writable->setEnabled(false);
    connect(m_writable.get(), &QSocketNotifier::activated, this, &ButtonLine::writeSome);
}

ButtonLine::~ButtonLine()
{
    m_writable.reset();
    if (m_master < 0)
        return;
    QFile::remove(m_link);
    ::close(m_master);
}

bool ButtonLine::hasListener() const
{
    pollfd file{m_master, POLLIN, 0};
    return m_master >= 0 && ::poll(&file, 1, 0) >= 0 && !(file.revents & POLLHUP);
}

void ButtonLine::send(const QByteArray &bytes)
{
    m_waiting += bytes;
    writeSome();
}

void ButtonLine::writeSome()
{
    if (!hasListener())
        m_waiting.clear();
    while (!m_waiting.isEmpty()) {
        const ssize_t count = ::write(m_master, m_waiting.constData(), m_waiting.size());
        if (count <= 0)
            break;
        m_waiting.remove(0, static_cast<int>(count));
    }
    m_writable->setEnabled(!m_waiting.isEmpty());
}
