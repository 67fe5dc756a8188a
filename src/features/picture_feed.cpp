#include "features/picture_feed.h"

#include "app/descriptors.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace {

constexpr int kBufferBytes = 64 * 1024;
constexpr int kSendBufferBytes = 1 << 20; // so that a picture of megabytes wakes the thread seldom
constexpr int kWaitMs = 100;              // between looks at the flag
constexpr int kRatePartsMax = 1001;       // as in 30000/1001 frames a second
constexpr AVRational kMicroseconds = {1, 1000000};

const std::vector<uint8_t> &bytesOf(const CameraPicture &picture)
{
    return picture.jpeg ? picture.jpeg->bytes : *picture.raw;
}

void closeEnd(int &end)
{
    if (end >= 0)
        ::close(end);
    end = -1;
}

} // namespace

/// The NUT stream. The first picture decides its format.
class PictureFeed::Muxer
{
public:
    explicit Muxer(PictureFeed &feed)
        : m_feed(feed)
    {
    }

    ~Muxer()
    {
        if (m_output && m_isOpen)
            av_write_trailer(m_output);
        if (m_output && m_output->pb) {
            av_freep(&m_output->pb->buffer);
            avio_context_free(&m_output->pb);
        }
        avformat_free_context(m_output);
        av_packet_free(&m_packet);
    }

    Muxer(const Muxer &) = delete;
    Muxer &operator=(const Muxer &) = delete;

    /// False when nobody reads any more.
    bool write(const CameraPicture &picture)
    {
        if (!m_output && !open(picture))
            return false;
        if (!fits(picture)) {
            m_feed.m_isFormatChanged = true;
            return true;
        }
        const std::vector<uint8_t> &bytes = bytesOf(picture);
        const int64_t us =
            std::chrono::duration_cast<std::chrono::microseconds>(picture.arrival - m_feed.m_start)
                .count();
        const int64_t time = av_rescale_q(us, kMicroseconds, m_stream->time_base);
        m_lastTime = std::max(time, m_lastTime + 1);
        m_packet->data = const_cast<uint8_t *>(bytes.data()); // only read
        m_packet->size = static_cast<int>(bytes.size());
        m_packet->pts = m_packet->dts = m_lastTime;
        m_packet->flags = AV_PKT_FLAG_KEY;
        m_packet->stream_index = 0;
        const bool isWritten = av_write_frame(m_output, m_packet) >= 0;
        av_packet_unref(m_packet);
        m_feed.m_written += isWritten ? 1 : 0;
        return isWritten;
    }

private:
    bool open(const CameraPicture &picture)
    {
        auto *buffer = static_cast<uint8_t *>(av_malloc(kBufferBytes));
        if (!buffer || !m_packet ||
            avformat_alloc_output_context2(&m_output, nullptr, "nut", nullptr) < 0) {
            av_free(buffer);
            return false;
        }
        m_output->pb =
            avio_alloc_context(buffer, kBufferBytes, 1, &m_feed, nullptr, writeBytes, nullptr);
        m_output->flags |= AVFMT_FLAG_FLUSH_PACKETS;
        m_stream = avformat_new_stream(m_output, nullptr);
        if (!m_output->pb || !m_stream)
            return false;
        AVCodecParameters &codec = *m_stream->codecpar;
        codec.codec_type = AVMEDIA_TYPE_VIDEO;
        codec.codec_id = picture.jpeg ? AV_CODEC_ID_MJPEG : AV_CODEC_ID_RAWVIDEO;
        codec.width = picture.size.width;
        codec.height = picture.size.height;
        if (!picture.jpeg) {
            codec.format = picture.pixelFormat;
            codec.codec_tag = avcodec_pix_fmt_to_codec_tag(AVPixelFormat(picture.pixelFormat));
        }
        m_stream->time_base = kMicroseconds;
        m_stream->avg_frame_rate = m_stream->r_frame_rate = av_d2q(m_feed.m_rate, kRatePartsMax);
        m_isOpen = avformat_write_header(m_output, nullptr) >= 0;
        return m_isOpen;
    }

    // A JPEG picture brings its size along.
    bool fits(const CameraPicture &picture) const
    {
        const AVCodecParameters &codec = *m_stream->codecpar;
        if (picture.jpeg || codec.codec_id == AV_CODEC_ID_MJPEG)
            return picture.jpeg && codec.codec_id == AV_CODEC_ID_MJPEG;
        return picture.pixelFormat == codec.format &&
               picture.size == cv::Size(codec.width, codec.height);
    }

    static int writeBytes(void *feed, uint8_t *bytes, int count)
    {
        return static_cast<PictureFeed *>(feed)->send(bytes, count) ? count : AVERROR(EPIPE);
    }

    PictureFeed &m_feed;
    AVFormatContext *m_output = nullptr;
    AVStream *m_stream = nullptr;
    AVPacket *m_packet = av_packet_alloc();
    int64_t m_lastTime = -1;
    bool m_isOpen = false;
};

PictureFeed::PictureFeed(Clock::time_point start, double rate)
    : m_start(start)
    , m_rate(rate)
{
    if (!openSocketPair(m_ends))
        return;
    nonBlocking(m_ends[1]);
    ::setsockopt(m_ends[1], SOL_SOCKET, SO_SNDBUF, &kSendBufferBytes, sizeof kSendBufferBytes);
    m_thread = std::thread([this] { run(); });
}

PictureFeed::~PictureFeed()
{
    m_isGivenUp = true;
    finish();
    if (m_thread.joinable())
        m_thread.join();
    closeReader();
}

void PictureFeed::closeReader()
{
    closeEnd(m_ends[0]);
}

void PictureFeed::take(const CameraPicture &picture)
{
    if (picture.arrival < m_start || !(picture.jpeg || picture.raw))
        return;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_isFinishing)
            return;
        const size_t bytes = bytesOf(picture).size();
        if (m_waiting.size() >= kWaitingMax || m_waitingBytes + bytes > kWaitingBytesMax) {
            ++m_leftOut;
            return;
        }
        m_waitingBytes += bytes;
        m_waiting.push_back(picture);
    }
    m_changed.notify_one();
}

void PictureFeed::finish()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isFinishing = true;
    }
    m_changed.notify_one();
}

void PictureFeed::run()
{
    {
        Muxer muxer(*this);
        bool isRead = true;
        while (isRead) {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_changed.wait(lock, [this] { return m_isFinishing || !m_waiting.empty(); });
            if (m_waiting.empty())
                break;
            const CameraPicture picture = std::move(m_waiting.front());
            m_waiting.pop_front();
            m_waitingBytes -= bytesOf(picture).size();
            lock.unlock();
            isRead = muxer.write(picture);
        }
    }
    closeEnd(m_ends[1]);
    finish(); // nothing is taken any more
}

bool PictureFeed::send(const uint8_t *bytes, int count)
{
    while (count > 0 && !m_isGivenUp) {
        pollfd writable = {m_ends[1], POLLOUT, 0};
        if (::poll(&writable, 1, kWaitMs) <= 0)
            continue;
        const ssize_t sent = ::send(m_ends[1], bytes, static_cast<size_t>(count), kSendFlags);
        if (sent < 0 && errno != EAGAIN && errno != EINTR)
            return false;
        bytes += std::max<ssize_t>(sent, 0);
        count -= static_cast<int>(std::max<ssize_t>(sent, 0));
    }
    return count == 0;
}
