#include "video/stream_reader.h"

#include "video/input_format.h"
#include "video/picture_converter.h"

#include <QDebug>

#include <chrono>
#include <cstdio>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kDamagedInARowMax = 25;
constexpr auto kSilenceMax = std::chrono::seconds(3);
constexpr auto kOpeningMax = std::chrono::seconds(5);
constexpr int64_t kPictureBytesMax = 64 << 20; // more without an end is no picture
constexpr int kReadErrorsInARowMax = 50;       // about a second of reads 20 ms apart
constexpr int64_t kPixelsMax = 64 << 20;       // more can only be a damaged header
constexpr int64_t kAnalyzeUs = 1000000;        // cameras tell their format with the first picture

struct PacketDeleter
{
    void operator()(AVPacket *packet) const { av_packet_free(&packet); }
};
struct FrameDeleter
{
    void operator()(AVFrame *frame) const { av_frame_free(&frame); }
};
struct CodecDeleter
{
    void operator()(AVCodecContext *context) const { avcodec_free_context(&context); }
};
struct FormatDeleter
{
    void operator()(AVFormatContext *context) const { avformat_close_input(&context); }
};

// MJPEG streams name neither format nor size. Without a guess the search for stream information
// would decode a whole picture to learn what our decoder finds out by itself.
void guessPicture(AVCodecParameters &parameters)
{
    if (parameters.codec_id != AV_CODEC_ID_MJPEG)
        return;
    if (parameters.format == AV_PIX_FMT_NONE)
        parameters.format = AV_PIX_FMT_YUVJ420P;
    if (parameters.width <= 0 || parameters.height <= 0)
        parameters.width = parameters.height = 16;
}

} // namespace

struct StreamReader::Impl
{
    explicit Impl(const std::atomic<bool> &runningFlag)
        : running(runningFlag)
    {
    }

    OpenError openInput(const CaptureSource &source, StepLog log);
    OpenError openDecoder();
    Status readFailed(int error);
    Status take();
    Status takeJpeg();
    Status decode();
    Status damaged();

    bool isLate() const { return Clock::now() > deadline; }
    int64_t bytesRead() const { return input && input->pb ? input->pb->bytes_read : 0; }

    // Whether a read that is under way should be broken off.
    static int isOver(void *self)
    {
        const Impl *impl = static_cast<const Impl *>(self);
        return !impl->running || impl->isLate() ||
               impl->bytesRead() - impl->bytesBefore > kPictureBytesMax;
    }

    const std::atomic<bool> &running;
    Clock::time_point deadline = Clock::time_point::max(); // for what is waited for
    int64_t bytesBefore = 0;                               // read before the packet waited for
    std::unique_ptr<AVFormatContext, FormatDeleter> input;
    JpegDecoder jpegDecoder;
    JpegPtr jpeg;                                          // null when the camera sends none
    std::unique_ptr<AVCodecContext, CodecDeleter> decoder; // null for JPEG pictures
    std::unique_ptr<AVPacket, PacketDeleter> packet{av_packet_alloc()};
    std::unique_ptr<AVFrame, FrameDeleter> picture{av_frame_alloc()};
    std::unique_ptr<AVFrame, FrameDeleter> incoming{av_frame_alloc()};
    std::shared_ptr<const std::vector<uint8_t>> raw; // null when not kept
    bool isRawKept = false;
    PictureConverter converter;
    bool isSilent = false; // the last wait was longer than its deadline
    int videoStream = -1;
    int openResult = 0;
    int damagedInARow = 0;
    int readErrorsInARow = 0;
};

StreamReader::StreamReader(const std::atomic<bool> &running)
    : m(std::make_unique<Impl>(running))
{
}
StreamReader::~StreamReader() = default;

StreamReader::OpenError StreamReader::open(const CaptureSource &source, StepLog log)
{
    m->deadline = Clock::now() + kOpeningMax;
    const OpenError error = m->openInput(source, log);
    m->isSilent = m->isLate();
    if (m->isSilent) // whatever was made of that
        return OpenError::Silent;
    if (error != OpenError::None)
        return error;
    m->deadline = Clock::time_point::max();
    return m->openDecoder();
}

StreamReader::OpenError StreamReader::Impl::openInput(const CaptureSource &source, StepLog log)
{
    log("avformat_alloc_context ....");
    AVFormatContext *context = avformat_alloc_context();
    if (!context || !packet || !picture || !incoming)
        return OpenError::NoContext;
    input.reset(context);
    log("avformat_alloc_context ok");

    const AVInputFormat *format = inputFormat(source.format.toUtf8().constData());
    if (!format)
        return OpenError::NoInputFormat;
    log("av_find_input_format ok");

    context->interrupt_callback = {isOver, this};
    context->flags |= AVFMT_FLAG_NONBLOCK; // a silent device answers "try again" instead of waiting
    context->max_analyze_duration = kAnalyzeUs;
    AVDictionary *options = nullptr;
    for (const auto &option : source.options)
        av_dict_set(&options, option.first.toUtf8().constData(), option.second.toUtf8().constData(),
                    0);
    context = input.release(); // a failed open frees it
    openResult = avformat_open_input(&context, source.url.toUtf8().constData(), format, &options);
    av_dict_free(&options);
    log("avformat_open_input ok"); // written before the result is looked at
    if (openResult < 0)
        return OpenError::OpenInput;
    input.reset(context);
    for (unsigned i = 0; i < context->nb_streams; ++i)
        guessPicture(*context->streams[i]->codecpar);

    qDebug(">>>>>>>>>>>>>>run 01\n");
    log("avformat_find_stream_info ...");
    // A driver has told everything at opening. The search would go on asking a non-blocking device
    // for pictures at full load, without end when the camera is silent.
    if (source.format == QLatin1String("video4linux2"))
        return OpenError::None;
    return avformat_find_stream_info(context, nullptr) < 0 ? OpenError::NoStreamInfo
                                                           : OpenError::None;
}

StreamReader::OpenError StreamReader::Impl::openDecoder()
{
    for (unsigned i = 0; i < input->nb_streams && videoStream < 0; ++i) {
        if (input->streams[i]->codecpar->codec_type == AVMEDIA_TYPE_VIDEO)
            videoStream = static_cast<int>(i);
    }
    if (videoStream < 0)
        return OpenError::NoVideoStream;
    const AVCodecParameters *parameters = input->streams[videoStream]->codecpar;
    if (parameters->codec_id == AV_CODEC_ID_MJPEG)
        return OpenError::None;
    const AVCodec *codec = avcodec_find_decoder(parameters->codec_id);
    if (!codec)
        return OpenError::NoDecoder;
    decoder.reset(avcodec_alloc_context3(codec));
    if (!decoder || avcodec_parameters_to_context(decoder.get(), parameters) < 0)
        return OpenError::OpenDecoder;
    decoder->max_pixels = kPixelsMax;
    decoder->err_recognition |= AV_EF_EXPLODE; // no picture rather than a part of one
    decoder->thread_type = FF_THREAD_SLICE;    // frame threads would show each picture later
    return avcodec_open2(decoder.get(), codec, nullptr) < 0 ? OpenError::OpenDecoder
                                                            : OpenError::None;
}

std::string StreamReader::openInputText() const
{
    char reason[1024] = "";
    av_strerror(m->openResult, reason, sizeof reason);
    char text[sizeof reason + 64];
    std::snprintf(text, sizeof text, "Couldn't open file %d(%s)", m->openResult, reason);
    return text;
}

bool StreamReader::isSilent() const
{
    return m->isSilent;
}

StreamReader::Status StreamReader::read()
{
    if (m->deadline == Clock::time_point::max()) {
        m->deadline = Clock::now() + kSilenceMax;
        m->bytesBefore = m->bytesRead();
    }
    const int result = av_read_frame(m->input.get(), m->packet.get());
    m->isSilent = m->isLate();
    if (!m->running)
        av_packet_unref(m->packet.get());
    else if (result < 0)
        return m->readFailed(result);
    if (!m->running)
        return Status::Ended;
    m->deadline = Clock::time_point::max();
    m->readErrorsInARow = 0;
    // What comes after a live connection broke off, or fell silent, is the rest of what came
    // before.
    AVIOContext *io = m->input->pb;
    const bool torn = io && io->eof_reached && avio_size(io) < 0; // unlike a file's end
    const bool video = m->packet->stream_index == m->videoStream;
    const Status status = torn ? Status::Ended : video ? m->take() : Status::NoPicture;
    av_packet_unref(m->packet.get());
    return status;
}

StreamReader::Status StreamReader::Impl::readFailed(int error)
{
    if (error == AVERROR_EOF || isOver(this) != 0)
        return Status::Ended;
    if (error == AVERROR(EAGAIN) || error == AVERROR(EINTR))
        return Status::NotReady;
    return ++readErrorsInARow < kReadErrorsInARowMax ? Status::NotReady : Status::Ended;
}

StreamReader::Status StreamReader::Impl::take()
{
    if (damagedInARow > kDamagedInARowMax)
        return Status::DecodeError;
    return decoder ? decode() : takeJpeg();
}

// Decoding waits until it is known how many pixels are wanted, so here only the header is read.
StreamReader::Status StreamReader::Impl::takeJpeg()
{
    const auto taken = std::make_shared<JpegPicture>();
    taken->bytes.assign(packet->data, packet->data + packet->size);
    taken->size = jpegDecoder.sizeOf(taken->bytes);
    if (taken->size.empty())
        return damaged();
    jpeg = taken;
    return Status::Picture;
}

StreamReader::Status StreamReader::Impl::damaged()
{
    return ++damagedInARow > kDamagedInARowMax ? Status::DecodeError : Status::NoPicture;
}

StreamReader::Status StreamReader::Impl::decode()
{
    bool produced = false;
    int result = avcodec_send_packet(decoder.get(), packet.get());
    while (result >= 0) {
        result = avcodec_receive_frame(decoder.get(), incoming.get());
        if (result >= 0) { // of several pictures the newest counts
            av_frame_unref(picture.get());
            av_frame_move_ref(picture.get(), incoming.get());
            produced = true;
        }
    }
    if (result != AVERROR(EAGAIN))
        return damaged();
    raw.reset();
    if (isRawKept && decoder->codec_id == AV_CODEC_ID_RAWVIDEO)
        raw =
            std::make_shared<const std::vector<uint8_t>>(packet->data, packet->data + packet->size);
    return produced ? Status::Picture : Status::NoPicture;
}

cv::Size StreamReader::size() const
{
    return m->jpeg ? m->jpeg->size : cv::Size(m->picture->width, m->picture->height);
}

JpegPtr StreamReader::compressed() const
{
    return m->jpeg;
}

CameraPicture StreamReader::sent() const
{
    CameraPicture picture;
    picture.jpeg = m->jpeg;
    picture.raw = m->raw;
    picture.pixelFormat = m->decoder ? m->decoder->pix_fmt : AV_PIX_FMT_NONE;
    picture.size = size();
    return picture;
}

void StreamReader::keepRaw(bool isKept)
{
    m->isRawKept = isKept;
}

bool StreamReader::convert(cv::Mat &pixels, const JpegDecoding &how)
{
    const bool isGood = m->jpeg ? m->jpegDecoder.decode(*m->jpeg, how, pixels)
                                : m->converter.convert(*m->picture, pixels, how.angle);
    m->damagedInARow = isGood ? 0 : m->damagedInARow + 1;
    return isGood;
}

const char *openErrorText(StreamReader::OpenError error)
{
    switch (error) {
    case StreamReader::OpenError::None:
        break;
    case StreamReader::OpenError::NoContext:
        return "avformat_alloc_context error!";
    case StreamReader::OpenError::NoInputFormat:
        return "av_find_input_format error!";
    case StreamReader::OpenError::OpenInput:
        return "Couldn't open input stream.\n";
    case StreamReader::OpenError::NoStreamInfo:
        return "Couldn't find stream information.\n";
    case StreamReader::OpenError::NoVideoStream:
        return "Couldn't find a video stream.\n";
    case StreamReader::OpenError::NoDecoder:
        return "Codec not found.\n";
    case StreamReader::OpenError::OpenDecoder:
        return "Could not open codec.\n";
    case StreamReader::OpenError::Silent:
        return "the camera sends no picture";
    }
    return "";
}
