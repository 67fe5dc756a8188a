#include "stand/stream_server.h"

#include "app/descriptors.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#ifdef __linux__
#include <linux/sockios.h>
#endif

namespace {

// Large, so that a frame of megabytes wakes the server few times; the system may grant less.
constexpr int kSendBufferBytes = 4 << 20;

int listenOn(const std::string &path)
{
    sockaddr_un address = {};
    if (path.size() >= sizeof address.sun_path)
        return -1;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size());
    const int file = nonBlocking(openLocalSocket());
    if (file < 0)
        return -1;
    ::unlink(path.c_str());
    if (::bind(file, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
        ::listen(file, 8) == 0)
        return file;
    ::close(file);
    return -1;
}

// Bytes that the reader has not taken from the socket yet. Without this a slow reader of small
// frames would find a queue of old ones there.
bool hasUnreadBytes(int file)
{
#ifdef __linux__
    int bytes = 0;
    return ::ioctl(file, SIOCOUTQ, &bytes) == 0 && bytes > 0;
#else
    (void)file;
    return false;
#endif
}

} // namespace

StreamServer::StreamServer(const std::vector<Endpoint> &endpoints, FrameFeed &feed)
    : m_feed(feed)
{
    for (const Endpoint &endpoint : endpoints) {
        Mode mode;
        mode.path = endpoint.path;
        mode.period = std::chrono::duration_cast<Clock::duration>(
            std::chrono::duration<double>(1 / endpoint.rate));
        mode.listener = listenOn(endpoint.path);
        m_isListening = m_isListening && mode.listener >= 0;
        m_modes.push_back(std::move(mode));
    }
    m_isListening = m_isListening && openPipe(m_stop);
    if (m_isListening)
        m_thread = std::thread([this] { run(); });
}

StreamServer::~StreamServer()
{
    if (m_stop[1] >= 0)
        ::close(m_stop[1]);
    if (m_thread.joinable())
        m_thread.join();
    if (m_stop[0] >= 0)
        ::close(m_stop[0]);
    for (size_t i = 0; i < m_modes.size(); ++i) {
        if (m_modes[i].listener < 0)
            continue;
        ::close(m_modes[i].listener);
        ::unlink(m_modes[i].path.c_str());
        for (const Reader &reader : m_modes[i].readers)
            ::close(reader.file);
        m_feed.setReaders(i, 0);
    }
}

void StreamServer::run()
{
    while (waitForWork()) {
        for (size_t i = 0; i < m_modes.size(); ++i) {
            acceptReaders(i);
            dropClosedReaders(i);
            startFrames(i);
        }
    }
}

// Sleeps until a socket has something to do or a frame is due; false when the server ends.
bool StreamServer::waitForWork()
{
    std::vector<pollfd> files{{m_stop[0], POLLIN, 0}};
    Clock::time_point due = Clock::time_point::max();
    for (const Mode &mode : m_modes) {
        files.push_back({mode.listener, POLLIN, 0});
        for (const Reader &reader : mode.readers)
            files.push_back(
                {reader.file, static_cast<short>(reader.frame ? POLLIN | POLLOUT : POLLIN), 0});
        if (!mode.readers.empty())
            due = std::min(due, mode.due);
    }
    int limitMs = -1;
    if (due != Clock::time_point::max()) {
        const auto left = std::max(Clock::duration::zero(), due - Clock::now());
        limitMs = static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
    }
    if (::poll(files.data(), static_cast<nfds_t>(files.size()), limitMs) < 0)
        return errno == EINTR;
    return files.front().revents == 0;
}

void StreamServer::acceptReaders(size_t number)
{
    Mode &mode = m_modes[number];
    for (;;) {
        const int file = nonBlocking(closedInChildren(::accept(mode.listener, nullptr, nullptr)));
        if (file < 0)
            return;
        ::setsockopt(file, SOL_SOCKET, SO_SNDBUF, &kSendBufferBytes, sizeof kSendBufferBytes);
        if (mode.readers.empty())
            mode.due = Clock::now();
        mode.readers.push_back({file, nullptr, 0});
        m_feed.setReaders(number, static_cast<int>(mode.readers.size()));
    }
}

void StreamServer::dropClosedReaders(size_t number)
{
    Mode &mode = m_modes[number];
    const size_t before = mode.readers.size();
    mode.readers.remove_if([](Reader &reader) {
        char ignored[256];
        const ssize_t got = ::recv(reader.file, ignored, sizeof ignored, MSG_DONTWAIT);
        const bool isOpen = got > 0 || (got < 0 && (errno == EAGAIN || errno == EINTR));
        if (isOpen && sendSome(reader))
            return false;
        ::close(reader.file);
        return true;
    });
    if (mode.readers.size() != before)
        m_feed.setReaders(number, static_cast<int>(mode.readers.size()));
}

void StreamServer::startFrames(size_t number)
{
    Mode &mode = m_modes[number];
    const Clock::time_point now = Clock::now();
    if (mode.readers.empty() || now < mode.due)
        return;
    // After a hold-up (a suspended machine) the beat starts afresh instead of catching up.
    mode.due = now - mode.due > mode.period ? now + mode.period : mode.due + mode.period;
    const Jpeg frame = m_feed.nextFrame(number);
    if (!frame)
        return;
    for (Reader &reader : mode.readers) {
        if (reader.frame || hasUnreadBytes(reader.file))
            continue;
        reader.frame = frame;
        reader.sent = 0;
        sendSome(reader); // a closed one is dropped in the next round
    }
}

// Sends what the socket takes; false when the reader is gone.
bool StreamServer::sendSome(Reader &reader)
{
    while (reader.frame) {
        const size_t left = reader.frame->size() - reader.sent;
        const ssize_t count = ::send(reader.file, reader.frame->data() + reader.sent, left,
                                     kSendFlags | MSG_DONTWAIT);
        if (count < 0)
            return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
        reader.sent += static_cast<size_t>(count);
        if (reader.sent == reader.frame->size())
            reader.frame.reset();
    }
    return true;
}
