#pragma once

#include "stand/frame_feed.h"

#include <chrono>
#include <list>
#include <string>
#include <thread>
#include <vector>

/// Streams the modes of one camera, each on a unix socket of its own, at the mode's rate.
///
/// Every reader has at most one frame under way. Who is still busy with it when the next is due
/// loses the next, whole, and nobody waits for him. All sending is done by one thread, which
/// ends, with its sockets closed and removed, in the destructor.
class StreamServer
{
public:
    struct Endpoint
    {
        std::string path; ///< of the socket
        double rate = 0;  ///< frames a second
    };

    /// `feed` outlives the server; its mode numbers are positions in `endpoints`.
    StreamServer(const std::vector<Endpoint> &endpoints, FrameFeed &feed);
    ~StreamServer();
    StreamServer(const StreamServer &) = delete;
    StreamServer &operator=(const StreamServer &) = delete;

    /// False when a socket could not be made.
    bool isListening() const { return m_isListening; }

private:
    using Clock = std::chrono::steady_clock;

    struct Reader
    {
        int file = -1;
        Jpeg frame; ///< null between two frames
        size_t sent = 0;
    };

    struct Mode
    {
        std::string path;
        Clock::duration period{};
        Clock::time_point due;
        int listener = -1;
        std::list<Reader> readers;
    };

    void run();
    bool waitForWork();
    void acceptReaders(size_t number);
    void dropClosedReaders(size_t number);
    void startFrames(size_t number);
    static bool sendSome(Reader &reader);

    FrameFeed &m_feed;
    std::vector<Mode> m_modes;
    bool m_isListening = true;
    int m_stop[2] = {-1, -1}; ///< pipe; closing its writing end stops the thread
    std::thread m_thread;
};
